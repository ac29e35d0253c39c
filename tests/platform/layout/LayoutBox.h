// The simplest layout item: tests, fuzz targets and benchmarks set its fields.
#pragma once

#include "tesmar/platform/layout/LayoutItem.h"
#include "tesmar/platform/layout/NSLayoutConstraint.h"

#include <functional>
#include <utility>

namespace tesmar {

struct LayoutBox : LayoutItem, std::enable_shared_from_this<LayoutBox> {
    explicit LayoutBox(std::string boxName) : name(std::move(boxName)) {}

    // Adds a new child.
    std::shared_ptr<LayoutBox> add(const std::string& childName) {
        children.push_back(std::make_shared<LayoutBox>(childName));
        children.back()->parent = weak_from_this();
        return children.back();
    }
    void constrain(std::string_view format, const NSLayoutConstraint::Views& views,
                   NSLayoutFormatOptions options = NSLayoutFormatNone) {
        for (auto& constraint :
             NSLayoutConstraint::constraintsWithVisualFormat(format, options, {}, views))
            constraints.push_back(constraint);
    }

    std::shared_ptr<LayoutItem> layoutParent() const override { return parent.lock(); }
    std::size_t layoutChildCount() const override { return children.size(); }
    LayoutItem& layoutChild(std::size_t index) const override { return *children[index]; }
    const std::vector<Ref<NSLayoutConstraint>>& layoutConstraints() const override {
        return constraints;
    }
    bool layoutFrameIsFixed() const override { return frameIsFixed; }
    CGRect layoutFrame() const override { return frame; }
    std::optional<CGFloat> layoutIntrinsicExtent(LayoutAxis axis) const override {
        return intrinsic[static_cast<std::size_t>(axis)];
    }
    double layoutHuggingPriority(LayoutAxis) const override { return hugging; }
    double layoutCompressionPriority(LayoutAxis) const override { return compression; }
    std::optional<CGFloat> layoutBaselineBelowCenter() const override { return baseline; }
    bool layoutEdgesAreContent() const override { return isScroll; }
    bool layoutIsRightToLeft() const override { return isRightToLeft; }
    std::string layoutName() const override { return name; }
    void setLayoutFrame(const CGRect& newFrame) override {
        frame = newFrame;
        ++frameWrites;
        onFrame();
    }
    void setLayoutContentSize(CGSize size) override { contentSize = size; }
    void layoutNeedsUpdate() override { onNeedsUpdate(); }

    std::string name;
    std::weak_ptr<LayoutBox> parent;
    std::vector<std::shared_ptr<LayoutBox>> children;
    std::vector<Ref<NSLayoutConstraint>> constraints;
    bool frameIsFixed = false;
    CGRect frame;
    std::optional<CGFloat> intrinsic[2];
    double hugging = 250;
    double compression = 750;
    std::optional<CGFloat> baseline;
    bool isScroll = false;
    bool isRightToLeft = false;
    CGSize contentSize;
    int frameWrites = 0;
    std::function<void()> onFrame = [] {};
    std::function<void()> onNeedsUpdate = [] {};
};

} // namespace tesmar
