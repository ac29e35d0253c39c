#include "tesmar/platform/layout/internal/visual_format_parser.h"

#include "tesmar/platform/geometry/geometry.h"

#include <charconv>
#include <cmath>
#include <utility>

namespace tesmar {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// A recursive-descent parser: one function for each rule of the grammar. Errors are thrown, so that
// the functions read like the rules.
class Parser {
  public:
    explicit Parser(std::string_view text) : text_(text) {}

    VisualFormat format() {
        if (text_.size() > kMaxVisualFormatLength) {
            position_ = kMaxVisualFormatLength;
            fail("longer than " + std::to_string(kMaxVisualFormatLength) + " bytes");
        }
        VisualFormat result;
        if (accept("V:"))
            result.axis = LayoutAxis::vertical;
        else
            accept("H:");
        if (accept("|"))
            result.gapFromSuperview = gap();
        result.views.push_back(view());
        while (position_ < text_.size()) {
            VisualFormatGap next = gap();
            if (accept("|")) {
                result.gapToSuperview = std::move(next);
                break;
            }
            result.gaps.push_back(std::move(next));
            result.views.push_back(view());
        }
        if (position_ < text_.size())
            fail("nothing may follow the closing '|'");
        return result;
    }

  private:
    [[noreturn]] void fail(std::string reason) const {
        throw VisualFormatError{position_, std::move(reason)};
    }

    char peek() const { return position_ < text_.size() ? text_[position_] : '\0'; }

    bool accept(std::string_view token) {
        if (text_.substr(position_, token.size()) != token)
            return false;
        position_ += token.size();
        return true;
    }

    void expect(std::string_view token) {
        if (!accept(token))
            fail("expected '" + std::string(token) + "'");
    }

    VisualFormatGap gap() {
        VisualFormatGap result;
        if (!accept("-"))
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
        result.offset = position_;
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
        while (accept(","));
        expect(")");
        return result;
    }

    enum class NegativeNumber { allowed, afterRelationOnly };

    VisualFormatLength length(NegativeNumber negatives) {
        VisualFormatLength result;
        const std::size_t start = position_;
        if (accept("<="))
            result.relation = NSLayoutRelation::lessThanOrEqual;
        else if (accept(">="))
            result.relation = NSLayoutRelation::greaterThanOrEqual;
        else
            accept("==");
        if (peek() == '-' && negatives == NegativeNumber::afterRelationOnly && position_ == start)
            fail("a negative number needs parentheses");
        result.operand = operand();
        if (accept("@"))
            result.priority = operand();
        return result;
    }

    VisualFormatOperand operand() {
        VisualFormatOperand result;
        result.offset = position_;
        if (isDigit(peek()) || peek() == '-' || peek() == '.')
            result.number = number();
        else
            result.name = name("a number or a name");
        return result;
    }

    double number() {
        const std::size_t start = position_;
        std::size_t end = position_ + (peek() == '-' ? 1 : 0);
        while (end < text_.size() && (isDigit(text_[end]) || text_[end] == '.'))
            ++end;
        // Unlike strtod, independent of the decimal sign of the host's locale.
        double value = 0;
        const auto [stop, error] = std::from_chars(text_.data() + start, text_.data() + end, value,
                                                   std::chars_format::fixed);
        if (error == std::errc::result_out_of_range || std::abs(value) > kLargestCoordinate)
            fail("the number is too large");
        if (error != std::errc() || stop != text_.data() + end)
            fail("expected a number");
        position_ = end;
        return value;
    }

    std::string_view name(const char* expected) {
        const std::size_t start = position_;
        if (!isNameStart(peek()))
            fail(std::string("expected ") + expected);
        while (isNameStart(peek()) || isDigit(peek()))
            ++position_;
        return text_.substr(start, position_ - start);
    }

    std::string_view text_;
    std::size_t position_ = 0;
};

} // namespace

VisualFormat parseVisualFormat(std::string_view format) {
    return Parser(format).format();
}

} // namespace tesmar
