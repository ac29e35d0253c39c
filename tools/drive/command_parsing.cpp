#include "tools/drive/Command.h"
#include "tools/drive/accessible.h"
#include "tools/drive/fault.h"

#include <charconv>
#include <cmath>
#include <map>

namespace tesmar::drive {
namespace {

constexpr double kMaxDragSeconds = 3600;
constexpr double kMaxCoordinate = 1e6;  // points
constexpr double kMaxWindowSide = 8192; // points
constexpr double kMaxPixels = 1 << 24;
// Of JSON objects and arrays in one another: printing them is recursive.
constexpr int kMaxNesting = 64;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

void requireNesting(int depth) {
    if (depth > kMaxNesting)
        throw Fault("JSON may nest at most " + std::to_string(kMaxNesting) + " levels deep");
}

// The end of the word at `at`. A JSON string, array or object is one word, blanks included.
std::size_t endOfWord(std::string_view line, std::size_t at) {
    const bool isJson = std::string_view("\"{[").find(line[at]) != std::string_view::npos;
    int depth = 0;
    bool inString = false;
    for (; at < line.size(); ++at) {
        const char c = line[at];
        if (isBlank(c) && !inString && depth <= 0)
            break;
        if (!isJson)
            continue;
        if (inString && c == '\\')
            ++at;
        else if (c == '"')
            inString = !inString;
        else if (!inString && (c == '{' || c == '['))
            requireNesting(++depth);
        else if (!inString && (c == '}' || c == ']'))
            --depth;
    }
    return std::min(at, line.size());
}

// The words of one line, read from left to right. In each method, `what` names the expected word
// for the Fault that is thrown when it is missing or wrong.
class Words {
  public:
    explicit Words(std::string_view line) {
        for (std::size_t at = 0; at < line.size();) {
            if (isBlank(line[at])) {
                ++at;
                continue;
            }
            if (line[at] == '#')
                break;
            const std::size_t end = endOfWord(line, at);
            words_.emplace_back(line.substr(at, end - at));
            at = end;
        }
    }

    bool atEnd() const { return next_ == words_.size(); }
    const std::string& command() const { return words_.front(); }

    std::string raw(const char* what) {
        if (atEnd())
            throw Fault(command() + ": " + what + " is missing");
        return words_[next_++];
    }

    // A word in double quotes is a JSON string, which may contain blanks.
    std::string word(const char* what) {
        std::string word = raw(what);
        if (word.front() != '"')
            return word;
        const Json json = Json::parse(word, nullptr, false);
        if (!json.is_string())
            throw Fault(command() + ": not a text: " + word);
        return json.get<std::string>();
    }

    // The remaining words, at least one, joined by blanks.
    std::string rest(const char* what) {
        std::string all = word(what);
        while (!atEnd())
            all += ' ' + word(what);
        return all;
    }

    double number(const char* what) {
        const std::string word = raw(what);
        double value = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error != std::errc() || end != word.data() + word.size())
            throw Fault(command() + ": " + what + " must be a number, not " + word);
        return value;
    }

    double number(const char* what, double low, double high) {
        const double value = number(what);
        if (!(value >= low && value <= high))
            throw Fault(command() + ": " + what + " must be from " + serialize(drive::number(low)) +
                        " to " + serialize(drive::number(high)) + ", not " + words_[next_ - 1]);
        return value;
    }

    bool boolean(const char* what) {
        const std::string word = raw(what);
        if (word != "true" && word != "false")
            throw Fault(command() + ": " + what + " must be true or false, not " + word);
        return word == "true";
    }

    CGPoint point(const char* x, const char* y) {
        const double first = number(x, -kMaxCoordinate, kMaxCoordinate);
        return {first, number(y, -kMaxCoordinate, kMaxCoordinate)};
    }

    Json json(const char* what) {
        const std::string word = raw(what);
        Json value = Json::parse(word, nullptr, false);
        if (value.is_discarded())
            throw Fault(command() + ": not JSON: " + word);
        return value;
    }

    bool nextIsNumber() const {
        if (atEnd())
            return false;
        const char c = words_[next_].front();
        return (c >= '0' && c <= '9') || c == '-' || c == '.';
    }

    void expectEnd() const {
        if (!atEnd())
            throw Fault(command() + ": one word too many: " + words_[next_]);
    }

  private:
    std::vector<std::string> words_;
    std::size_t next_ = 0;
};

Command parseWindow(Words& words) {
    UseWindow window;
    window.size.width = words.number("W", 1, kMaxWindowSide);
    window.size.height = words.number("H", 1, kMaxWindowSide);
    if (!words.atEnd())
        window.scale = words.number("SCALE", 0.1, 16);
    if (window.size.width * window.size.height * window.scale * window.scale > kMaxPixels)
        throw Fault("window: more than " + serialize(number(kMaxPixels)) + " pixels");
    return window;
}

Command parseSet(Words& words) {
    const std::string name = words.word("the property");
    if (name == "autoHideInterval")
        return SetAutoHideInterval{words.number("autoHideInterval")};
    if (name == "rememberChangedStyle")
        return SetRememberChangedStyle{words.boolean("rememberChangedStyle")};
    if (name == "delegate")
        return SetDelegate{words.boolean("delegate")};
    if (name == "CCEnabled")
        return SetCCEnabled{words.boolean("CCEnabled")};
    throw Fault("set: autoHideInterval, rememberChangedStyle, delegate or CCEnabled, not " + name);
}

// One of two words.
template <class T>
T choice(Words& words, std::string_view first, T ifFirst, std::string_view second, T ifSecond) {
    const std::string options = std::string(first) + " or " + std::string(second);
    const std::string word = words.word(options.c_str());
    if (word != first && word != second)
        throw Fault(words.command() + ": " + options + ", not " + word);
    return word == first ? ifFirst : ifSecond;
}

Command parseContrast(Words& words) {
    return SetContrast{
        choice(words, "high", TESMARContrast::high, "normal", TESMARContrast::normal)};
}

Command parseMirroring(Words& words) {
    return SetMirroring{
        choice(words, "panel", TESMARMirroring::panel, "controls", TESMARMirroring::controls)};
}

Command parsePresent(Words& words) {
    if (words.atEnd())
        return Present{UIModalPresentationStyle::card};
    if (const std::string how = words.word("how"); how != "full")
        throw Fault("present: nothing or full, not " + how);
    return Present{UIModalPresentationStyle::fullScreen};
}

Command parseCreate(Words& words) {
    if (words.atEnd())
        return Create{PanelKind::plain};
    if (const std::string kind = words.word("the kind of panel"); kind != "extended")
        throw Fault("create: nothing or extended, not " + kind);
    return Create{PanelKind::extended};
}

Command parseSend(Words& words) {
    Send send{words.word("SELECTOR"), {}};
    while (!words.atEnd()) {
        const std::string word = words.raw("an argument");
        Json json = Json::parse(word, nullptr, false);
        if (json.is_discarded())
            send.arguments.emplace_back(ViewName{word});
        else
            send.arguments.emplace_back(std::move(json));
    }
    return send;
}

Command parseTouch(Words& words) {
    static const std::map<std::string, UITouchPhase, std::less<>> phases{
        {"down", UITouchPhase::began}, {"move", UITouchPhase::moved}, {"up", UITouchPhase::ended}};
    const std::string name = words.word("down, move or up");
    const auto phase = phases.find(name);
    if (phase == phases.end())
        throw Fault("touch: down, move or up, not " + name);
    if (words.nextIsNumber())
        return Touch{phase->second, words.point("X", "Y")};
    return Touch{phase->second, ViewName{words.word("ID or X Y")}};
}

Command parseDrag(Words& words) {
    Drag drag{{words.word("ID")}, words.point("DX", "DY"), 0};
    drag.seconds = words.number("SECONDS", 0, kMaxDragSeconds);
    return drag;
}

Command parseKey(Words& words) {
    static const std::map<std::string, UIKey, std::less<>> keys{
        {"up", UIKey::up},         {"down", UIKey::down},
        {"left", UIKey::left},     {"right", UIKey::right},
        {"next", UIKey::next},     {"previous", UIKey::previous},
        {"select", UIKey::select}, {"increment", UIKey::increment},
        {"back", UIKey::back},     {"decrement", UIKey::decrement},
        {"escape", UIKey::back},   {"first", UIKey::first},
        {"last", UIKey::last}};
    const std::string name = words.word("the key");
    const auto key = keys.find(name);
    if (key == keys.end())
        throw Fault(
            "key: up, down, left, right, next, previous, select, back, increment, decrement, "
            "first or last, not " +
            name);
    return PressKey{key->second};
}

Command parseTree(Words& words) {
    if (words.atEnd())
        return RunQuery{Query::tree};
    if (const std::string which = words.word("which"); which != "accessible")
        throw Fault("tree: nothing or accessible, not " + which);
    return QueryAccessibleTree{};
}

Command parsePerform(Words& words) {
    std::string identifier = words.word("ID");
    const std::string name = words.word("ACTION");
    const auto action = actionNamed(name);
    if (!action)
        throw Fault("perform: press, decrease, increase or dismiss, not " + name);
    return Perform{std::move(identifier), *action};
}

Command parseFaces(Words& words) {
    RestrictFonts fonts;
    while (!words.atEnd())
        fonts.names.push_back(words.word("NAME"));
    return fonts;
}

// A command without arguments.
template <class C>
Command bare(Words&) {
    return C{};
}

template <Query Q>
Command query(Words&) {
    return RunQuery{Q};
}

// A command that has only the name of a view.
template <class C>
Command withView(Words& words) {
    return C{ViewName{words.word("ID")}};
}

using Parser = Command (*)(Words&);

const std::map<std::string, Parser, std::less<>>& parsers() {
    static const std::map<std::string, Parser, std::less<>> parsers{
        {"window", parseWindow},
        {"prefs", [](Words& w) -> Command { return UsePreferences{w.rest("PATH")}; }},
        {"faces", parseFaces},
        {"create", parseCreate},
        {"set", parseSet},
        {"assign", [](Words& w) -> Command { return Assign{w.json("the dictionary")}; }},
        {"language", [](Words& w) -> Command { return SetLanguage{w.word("TAG")}; }},
        {"text-scale", [](Words& w) -> Command { return SetTextScale{w.number("SCALE", 1, 2)}; }},
        {"contrast", parseContrast},
        {"mirroring", parseMirroring},
        {"captions",
         [](Words& w) -> Command { return ShowCaptions{w.atEnd() ? "" : w.rest("TEXT")}; }},
        {"present", parsePresent},
        {"dismiss", bare<Dismiss>},
        {"release", bare<Release>},
        {"send", parseSend},
        {"key", parseKey},
        {"advance",
         [](Words& w) -> Command { return Advance{w.number("SECONDS", 0, kMaxSessionSeconds)}; }},
        {"tap", withView<Tap>},
        {"touch", parseTouch},
        {"drag", parseDrag},
        {"reveal", withView<Reveal>},
        {"style", query<Query::style>},
        {"stored", query<Query::stored>},
        {"sessionOrDefault", query<Query::sessionOrDefault>},
        {"fonts", query<Query::fonts>},
        {"sizes", [](Words& w) -> Command { return QuerySizes{w.atEnd() ? "" : w.rest("NAME")}; }},
        {"methods", query<Query::methods>},
        {"get", withView<QueryView>},
        {"tree", parseTree},
        {"perform", parsePerform},
        {"focus", query<Query::focus>},
        {"shot", [](Words& w) -> Command { return TakePicture{w.rest("PATH")}; }},
        {"damage", query<Query::damage>},
        {"pending", query<Query::pending>},
    };
    return parsers;
}

} // namespace

std::optional<Command> parseCommand(std::string_view line) {
    Words words(line);
    if (words.atEnd())
        return std::nullopt;
    const std::string name = words.word("the command");
    const auto found = parsers().find(name);
    if (found == parsers().end())
        throw Fault("unknown command: " + name);
    const Command command = found->second(words);
    words.expectEnd();
    return command;
}

std::string_view nameOf(Query query) {
    switch (query) {
    case Query::style:
        return "style";
    case Query::stored:
        return "stored";
    case Query::sessionOrDefault:
        return "sessionOrDefault";
    case Query::fonts:
        return "fonts";
    case Query::methods:
        return "methods";
    case Query::tree:
        return "tree";
    case Query::focus:
        return "focus";
    case Query::damage:
        return "damage";
    case Query::pending:
        return "pending";
    }
    return "";
}

} // namespace tesmar::drive
