#include "tesmar/platform/layout/internal/visual_format.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace tesmar {
namespace {

// In points.
constexpr double kStandardSpaceToSibling = 8;
constexpr double kStandardSpaceToSuperview = 20;

// Builds the constraints of one format. Throws VisualFormatError, like the parser.
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

    // Returns nullopt for a name that is not a metric.
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
            throw VisualFormatError{length.priority->offset,
                                    "a priority must be between 0 and 1000"};
        return priority;
    }

    void add(const std::shared_ptr<LayoutItem>& first, NSLayoutAttribute attribute,
             NSLayoutRelation relation, const std::shared_ptr<LayoutItem>& second,
             NSLayoutAttribute secondAttribute, double constant, double priority) {
        constraints_.push_back(NSLayoutConstraint::constraintWithItem(
            first, attribute, relation, second, secondAttribute, 1, constant));
        constraints_.back()->setPriority(priority);
    }

    // Adds constraints that place `after` behind `before`, by the gap's lengths.
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

std::variant<std::vector<Ref<NSLayoutConstraint>>, VisualFormatError>
constraintsFromVisualFormat(std::string_view format, NSLayoutFormatOptions options,
                            const NSLayoutConstraint::Metrics& metrics,
                            const NSLayoutConstraint::Views& views) {
    try {
        const VisualFormat parsed = parseVisualFormat(format);
        return Builder(parsed, metrics, views).build(options);
    } catch (const VisualFormatError& error) {
        return error;
    }
}

std::string describe(const VisualFormatError& error, std::string_view format) {
    const std::size_t offset = std::min(error.offset, format.size());
    std::string text(format);
    // Keeps the message on one line.
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, '?');
    return "visual format: " + error.reason + ", at offset " + std::to_string(offset) + ": \"" +
           text.substr(0, offset) + " >>>" + text.substr(offset) + "\"";
}

} // namespace tesmar
