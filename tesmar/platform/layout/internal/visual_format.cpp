#include "tesmar/platform/layout/internal/visual_format.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tesmar {
namespace {

constexpr double kStandardSpaceToSibling = 8;
constexpr double kStandardSpaceToSuperview = 20;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// Throughout, an error unwinds as an exception of this file's own: the grammar then reads as the
// grammar does.
class Parser {
  public:
    explicit Parser(std::string_view text) : text_(text) {}

    VisualFormat format() {
        if (text_.size() > kLongestVisualFormat) {
            at_ = kLongestVisualFormat;
            fail("longer than " + std::to_string(kLongestVisualFormat) + " bytes");
        }
        VisualFormat result;
        if (take("V:"))
            result.axis = LayoutAxis::vertical;
        else
            take("H:");
        if (take("|"))
            result.gapFromSuperview = gap();
        result.views.push_back(view());
        while (at_ < text_.size()) {
            VisualFormatGap next = gap();
            if (take("|")) {
                result.gapToSuperview = std::move(next);
                break;
            }
            result.gaps.push_back(std::move(next));
            result.views.push_back(view());
        }
        if (at_ < text_.size())
            fail("nothing may follow the superview");
        return result;
    }

  private:
    [[noreturn]] void fail(std::string reason) const {
        throw VisualFormatError{at_, std::move(reason)};
    }

    char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    bool take(std::string_view token) {
        if (text_.substr(at_, token.size()) != token)
            return false;
        at_ += token.size();
        return true;
    }

    void expect(std::string_view token) {
        if (!take(token))
            fail("expected '" + std::string(token) + "'");
    }

    VisualFormatGap gap() {
        VisualFormatGap result;
        if (!take("-"))
            return result;
        if (peek() == '[' || peek() == '|') {
            result.isStandard = true;
            return result;
        }
        if (peek() == '(')
            result.lengths = lengthsInParentheses();
        else
            result.lengths.push_back(length(NegativeNumber::afterRelationOnly));
        expect("-");
        return result;
    }

    VisualFormatView view() {
        expect("[");
        VisualFormatView result;
        result.offset = at_;
        result.name = name("a view's name");
        if (peek() == '(')
            result.extents = lengthsInParentheses();
        expect("]");
        return result;
    }

    std::vector<VisualFormatLength> lengthsInParentheses() {
        std::vector<VisualFormatLength> result;
        expect("(");
        do
            result.push_back(length(NegativeNumber::allowed));
        while (take(","));
        expect(")");
        return result;
    }

    enum class NegativeNumber { allowed, afterRelationOnly };

    VisualFormatLength length(NegativeNumber negative) {
        VisualFormatLength result;
        const std::size_t start = at_;
        if (take("<="))
            result.relation = NSLayoutRelation::lessThanOrEqual;
        else if (take(">="))
            result.relation = NSLayoutRelation::greaterThanOrEqual;
        else
            take("==");
        if (peek() == '-' && negative == NegativeNumber::afterRelationOnly && at_ == start)
            fail("a negative number needs parentheses");
        result.operand = operand();
        if (take("@"))
            result.priority = operand();
        return result;
    }

    VisualFormatOperand operand() {
        VisualFormatOperand result;
        result.offset = at_;
        if (isDigit(peek()) || peek() == '-' || peek() == '.')
            result.number = number();
        else
            result.name = name("a number or a name");
        return result;
    }

    double number() {
        const std::size_t start = at_;
        std::size_t end = at_ + (peek() == '-' ? 1 : 0);
        while (end < text_.size() && (isDigit(text_[end]) || text_[end] == '.'))
            ++end;
        // Not strtod: the host may have set a locale with another decimal sign.
        double value = 0;
        const auto [stop, error] = std::from_chars(text_.data() + start, text_.data() + end, value,
                                                   std::chars_format::fixed);
        if (error == std::errc::result_out_of_range || std::abs(value) > kLargestCoordinate)
            fail("a number beyond every screen");
        if (error != std::errc() || stop != text_.data() + end)
            fail("expected a number");
        at_ = end;
        return value;
    }

    std::string_view name(const char* what) {
        const std::size_t start = at_;
        if (!isNameStart(peek()))
            fail(std::string("expected ") + what);
        while (isNameStart(peek()) || isDigit(peek()))
            ++at_;
        return text_.substr(start, at_ - start);
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

// Turns a parsed format into constraints by looking its names up.
class Builder {
  public:
    Builder(const VisualFormat& format, const NSLayoutConstraint::Metrics& metrics,
            const NSLayoutConstraint::Views& views)
        : format_(format), metrics_(metrics), views_(views),
          leading_(horizontal() ? NSLayoutAttribute::leading : NSLayoutAttribute::top),
          trailing_(horizontal() ? NSLayoutAttribute::trailing : NSLayoutAttribute::bottom),
          extent_(horizontal() ? NSLayoutAttribute::width : NSLayoutAttribute::height) {}

    std::vector<Ref<NSLayoutConstraint>> build(NSLayoutFormatOptions options) {
        std::vector<std::shared_ptr<LayoutItem>> items;
        for (const VisualFormatView& view : format_.views)
            items.push_back(item(view));
        if (format_.gapFromSuperview)
            addGap(*format_.gapFromSuperview, items.front(), leading_,
                   superview(items.front(), format_.views.front()), leading_,
                   kStandardSpaceToSuperview);
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (i > 0)
                addGap(format_.gaps[i - 1], items[i], leading_, items[i - 1], trailing_,
                       kStandardSpaceToSibling);
            addExtents(format_.views[i], items[i]);
        }
        if (format_.gapToSuperview)
            addGap(*format_.gapToSuperview, superview(items.back(), format_.views.back()),
                   trailing_, items.back(), trailing_, kStandardSpaceToSuperview);
        addAlignment(options, items);
        return std::move(constraints_);
    }

  private:
    bool horizontal() const { return format_.axis == LayoutAxis::horizontal; }

    std::shared_ptr<LayoutItem> item(const VisualFormatView& view) const {
        const auto found = views_.find(view.name);
        if (found == views_.end() || !found->second)
            throw VisualFormatError{view.offset,
                                    "no view is named \"" + std::string(view.name) + "\""};
        return found->second;
    }

    static std::shared_ptr<LayoutItem> superview(const std::shared_ptr<LayoutItem>& item,
                                                 const VisualFormatView& view) {
        auto parent = item->layoutParent();
        if (!parent)
            throw VisualFormatError{view.offset,
                                    "\"" + std::string(view.name) + "\" has no superview"};
        return parent;
    }

    // Nothing when the name is no metric.
    std::optional<double> numberOf(const VisualFormatOperand& operand) const {
        if (operand.name.empty())
            return operand.number;
        const auto found = metrics_.find(operand.name);
        if (found == metrics_.end())
            return std::nullopt;
        return finiteCoordinate(found->second);
    }

    double requireNumber(const VisualFormatOperand& operand) const {
        if (const auto value = numberOf(operand))
            return *value;
        throw VisualFormatError{operand.offset,
                                "no metric is named \"" + std::string(operand.name) + "\""};
    }

    double priorityOf(const VisualFormatLength& length) const {
        if (!length.priority)
            return UILayoutPriorityRequired;
        const double priority = requireNumber(*length.priority);
        if (priority < 0 || priority > UILayoutPriorityRequired)
            throw VisualFormatError{length.priority->offset, "a priority is between 0 and 1000"};
        return priority;
    }

    void add(const std::shared_ptr<LayoutItem>& first, NSLayoutAttribute attribute,
             NSLayoutRelation relation, const std::shared_ptr<LayoutItem>& second,
             NSLayoutAttribute secondAttribute, double constant, double priority) {
        constraints_.push_back(NSLayoutConstraint::constraintWithItem(
            first, attribute, relation, second, secondAttribute, 1, constant));
        constraints_.back()->setPriority(priority);
    }

    // `after` stands behind `before`, by the gap's lengths.
    void addGap(const VisualFormatGap& gap, const std::shared_ptr<LayoutItem>& after,
                NSLayoutAttribute afterEdge, const std::shared_ptr<LayoutItem>& before,
                NSLayoutAttribute beforeEdge, double standardSpace) {
        if (gap.lengths.empty())
            add(after, afterEdge, NSLayoutRelation::equal, before, beforeEdge,
                gap.isStandard ? standardSpace : 0, UILayoutPriorityRequired);
        for (const VisualFormatLength& length : gap.lengths)
            add(after, afterEdge, length.relation, before, beforeEdge,
                requireNumber(length.operand), priorityOf(length));
    }

    void addExtents(const VisualFormatView& view, const std::shared_ptr<LayoutItem>& item) {
        for (const VisualFormatLength& length : view.extents) {
            const double priority = priorityOf(length);
            if (const auto number = numberOf(length.operand)) {
                add(item, extent_, length.relation, nullptr, NSLayoutAttribute::notAnAttribute,
                    *number, priority);
                continue;
            }
            const auto other = views_.find(length.operand.name);
            if (other == views_.end() || !other->second)
                throw VisualFormatError{length.operand.offset,
                                        "no metric and no view is named \"" +
                                            std::string(length.operand.name) + "\""};
            add(item, extent_, length.relation, other->second, extent_, 0, priority);
        }
    }

    void addAlignment(NSLayoutFormatOptions options,
                      const std::vector<std::shared_ptr<LayoutItem>>& items) {
        struct Alignment {
            NSLayoutFormatOptions option;
            NSLayoutAttribute attribute;
            LayoutAxis axis;
        };
        using enum NSLayoutAttribute;
        static constexpr std::array<Alignment, 9> alignments{{
            {NSLayoutFormatAlignAllLeft, left, LayoutAxis::horizontal},
            {NSLayoutFormatAlignAllRight, right, LayoutAxis::horizontal},
            {NSLayoutFormatAlignAllLeading, leading, LayoutAxis::horizontal},
            {NSLayoutFormatAlignAllTrailing, trailing, LayoutAxis::horizontal},
            {NSLayoutFormatAlignAllCenterX, centerX, LayoutAxis::horizontal},
            {NSLayoutFormatAlignAllTop, top, LayoutAxis::vertical},
            {NSLayoutFormatAlignAllBottom, bottom, LayoutAxis::vertical},
            {NSLayoutFormatAlignAllCenterY, centerY, LayoutAxis::vertical},
            {NSLayoutFormatAlignAllLastBaseline, lastBaseline, LayoutAxis::vertical},
        }};
        for (const Alignment& alignment : alignments) {
            if (!(options & alignment.option))
                continue;
            if (alignment.axis == format_.axis)
                throw VisualFormatError{0,
                                        "an option aligns the views along the format's direction"};
            for (std::size_t i = 1; i < items.size(); ++i)
                add(items[i], alignment.attribute, NSLayoutRelation::equal, items[i - 1],
                    alignment.attribute, 0, UILayoutPriorityRequired);
        }
    }

    const VisualFormat& format_;
    const NSLayoutConstraint::Metrics& metrics_;
    const NSLayoutConstraint::Views& views_;
    NSLayoutAttribute leading_;
    NSLayoutAttribute trailing_;
    NSLayoutAttribute extent_;
    std::vector<Ref<NSLayoutConstraint>> constraints_;
};

} // namespace

std::variant<VisualFormat, VisualFormatError> parseVisualFormat(std::string_view format) {
    try {
        return Parser(format).format();
    } catch (const VisualFormatError& error) {
        return error;
    }
}

std::variant<std::vector<Ref<NSLayoutConstraint>>, VisualFormatError>
constraintsFromVisualFormat(std::string_view format, NSLayoutFormatOptions options,
                            const NSLayoutConstraint::Metrics& metrics,
                            const NSLayoutConstraint::Views& views) {
    try {
        const VisualFormat parsed = Parser(format).format();
        return Builder(parsed, metrics, views).build(options);
    } catch (const VisualFormatError& error) {
        return error;
    }
}

std::string describe(const VisualFormatError& error, std::string_view format) {
    const std::size_t offset = std::min(error.offset, format.size());
    std::string text(format);
    // One line, whatever the format holds.
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, '?');
    return "visual format: " + error.reason + ", at offset " + std::to_string(offset) + ": \"" +
           text.substr(0, offset) + " >>>" + text.substr(offset) + "\"";
}

} // namespace tesmar
