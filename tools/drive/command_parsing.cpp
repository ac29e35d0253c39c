#include "tools/drive/Command.h"
#include "tools/drive/fault.h"

#include <charconv>
#include <cmath>
#include <map>

namespace tesmar::drive {
namespace {

constexpr double kMostDragSeconds = 3600;
constexpr double kMostPoints = 1e6;
constexpr double kLargestSide = 8192; // points
constexpr double kMostPixels = 1 << 24;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// A word that begins as a JSON text, list or object ends where that does.
std::size_t endOfWord(std::string_view line, std::size_t at) {
    const bool isJson = std::string_view("\"{[").find(line[at]) != std::string_view::npos;
    int depth = 0;
    bool inText = false;
    for (; at < line.size(); ++at) {
        const char c = line[at];
        if (isBlank(c) && !inText && depth <= 0)
            break;
        if (!isJson)
            continue;
        if (inText && c == '\\')
            ++at;
        else if (c == '"')
            inText = !inText;
        else if (!inText && (c == '{' || c == '['))
            ++depth;
        else if (!inText && (c == '}' || c == ']'))
            --depth;
    }
    return std::min(at, line.size());
}

// The words of one line, taken one after the other.
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

    // Quotes keep blanks and other odd characters in a word.
    std::string word(const char* what) {
        std::string word = raw(what);
        if (word.front() != '"')
            return word;
        const Json json = Json::parse(word, nullptr, false);
        if (!json.is_string())
            throw Fault(command() + ": not a text: " + word);
        return json.get<std::string>();
    }

    // Everything that is left; at least one word.
    std::string words(const char* what) {
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

    double number(const char* what, double least, double most) {
        const double value = number(what);
        if (!(value >= least && value <= most))
            throw Fault(command() + ": " + what + " must be from " + text(drive::number(least)) +
                        " to " + text(drive::number(most)) + ", not " + words_[next_ - 1]);
        return value;
    }

    bool boolean(const char* what) {
        const std::string word = raw(what);
        if (word != "true" && word != "false")
            throw Fault(command() + ": " + what + " must be true or false, not " + word);
        return word == "true";
    }

    CGPoint point(const char* x, const char* y) {
        const double first = number(x, -kMostPoints, kMostPoints);
        return {first, number(y, -kMostPoints, kMostPoints)};
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

    void finish() const {
        if (!atEnd())
            throw Fault(command() + ": one word too many: " + words_[next_]);
    }

  private:
    std::vector<std::string> words_;
    std::size_t next_ = 0;
};

Command parseWindow(Words& words) {
    UseWindow window;
    window.size.width = words.number("W", 1, kLargestSide);
    window.size.height = words.number("H", 1, kLargestSide);
    if (!words.atEnd())
        window.scale = words.number("SCALE", 0.1, 16);
    if (window.size.width * window.size.height * window.scale * window.scale > kMostPixels)
        throw Fault("window: more than " + text(number(kMostPixels)) + " pixels");
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

Command parsePresent(Words& words) {
    if (words.atEnd())
        return Present{UIModalPresentationStyle::card};
    if (const std::string how = words.word("how"); how != "full")
        throw Fault("present: nothing or full, not " + how);
    return Present{UIModalPresentationStyle::fullScreen};
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
    drag.seconds = words.number("SECONDS", 0, kMostDragSeconds);
    return drag;
}

Command parseKey(Words& words) {
    if (const std::string key = words.word("the key"); key != "escape")
        throw Fault("key: escape, not " + key);
    return PressEscape{};
}

Command parseFaces(Words& words) {
    OfferFaces faces;
    while (!words.atEnd())
        faces.names.push_back(words.word("NAME"));
    return faces;
}

template <class C>
Command bare(Words&) {
    return C{};
}

template <Question Q>
Command ask(Words&) {
    return Ask{Q};
}

// Command C with a view's name.
template <class C>
Command onView(Words& words) {
    return C{ViewName{words.word("ID")}};
}

using Parse = Command (*)(Words&);

const std::map<std::string, Parse, std::less<>>& language() {
    static const std::map<std::string, Parse, std::less<>> language{
        {"window", parseWindow},
        {"prefs", [](Words& w) -> Command { return UsePreferences{w.words("PATH")}; }},
        {"faces", parseFaces},
        {"create", bare<Create>},
        {"set", parseSet},
        {"assign", [](Words& w) -> Command { return Assign{w.json("the dictionary")}; }},
        {"present", parsePresent},
        {"dismiss", bare<Dismiss>},
        {"release", bare<Release>},
        {"send", parseSend},
        {"key", parseKey},
        {"advance",
         [](Words& w) -> Command { return Advance{w.number("SECONDS", 0, kLongestSession)}; }},
        {"tap", onView<Tap>},
        {"touch", parseTouch},
        {"drag", parseDrag},
        {"reveal", onView<Reveal>},
        {"style", ask<Question::style>},
        {"stored", ask<Question::stored>},
        {"sessionOrDefault", ask<Question::sessionOrDefault>},
        {"fonts", ask<Question::fonts>},
        {"sizes", [](Words& w) -> Command { return AskSizes{w.atEnd() ? "" : w.words("NAME")}; }},
        {"methods", ask<Question::methods>},
        {"get", onView<AskView>},
        {"tree", ask<Question::tree>},
        {"shot", [](Words& w) -> Command { return TakePicture{w.words("PATH")}; }},
        {"damage", ask<Question::damage>},
        {"pending", ask<Question::pending>},
    };
    return language;
}

} // namespace

std::optional<Command> parseCommand(std::string_view line) {
    Words words(line);
    if (words.atEnd())
        return std::nullopt;
    const std::string name = words.word("the command");
    const auto found = language().find(name);
    if (found == language().end())
        throw Fault("unknown command: " + name);
    const Command command = found->second(words);
    words.finish();
    return command;
}

std::string_view wordOf(Question question) {
    switch (question) {
    case Question::style:
        return "style";
    case Question::stored:
        return "stored";
    case Question::sessionOrDefault:
        return "sessionOrDefault";
    case Question::fonts:
        return "fonts";
    case Question::methods:
        return "methods";
    case Question::tree:
        return "tree";
    case Question::damage:
        return "damage";
    case Question::pending:
        return "pending";
    }
    return "";
}

} // namespace tesmar::drive
