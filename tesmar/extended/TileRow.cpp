#include "tesmar/extended/internal/TileRow.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/runtime.h"

namespace tesmar {
namespace {

// As in the rows of colours, in points.
constexpr CGFloat kTile = 50;
constexpr CGFloat kTitleHeight = 10;
constexpr CGFloat kBelowTitle = 8;
constexpr CGFloat kWidth = 400;
constexpr std::size_t kTilesInLine = 8;

} // namespace

Class& TileRow::classObject() {
    static Class& type = *new Class("TileRow", &UIControl::classObject(), {});
    return type;
}

bool TileRow::initWithTiles(std::string_view title, StyleTile::Shape shape, std::size_t count) {
    if (!UIControl::initWithFrame({}))
        return false;
    title_ = make<UILabel>();
    title_->setFont(CCConstants::font());
    title_->setText(std::string(title));
    addSubview(title_);
    for (std::size_t i = 0; i < count; ++i) {
        auto tile =
            makeWith<StyleTile>(&StyleTile::initWithShape, CGRect{{}, {kTile, kTile}}, shape);
        taps_.push_back(
            tile->addListener(UIControlEventTouchUpInside, [this, i](UIControl&) { choose(i); }));
        addSubview(tile);
        tiles_.push_back(std::move(tile));
    }
    setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto fixed = [&](NSLayoutAttribute attribute, CGFloat length) {
        auto constraint = NSLayoutConstraint::constraintWithItem(
            refTo(this), attribute, NSLayoutRelation::equal, nullptr,
            NSLayoutAttribute::notAnAttribute, 1, length);
        addConstraint(constraint);
        return constraint;
    };
    fixed(NSLayoutAttribute::width, kWidth);
    height_ = fixed(NSLayoutAttribute::height, 0);
    placeTiles(kTitleHeight, false);
    return true;
}

void TileRow::placeTiles(CGFloat titleHeight, bool isRightToLeft) {
    title_->setFrame({0, 0, kWidth, titleHeight});
    const CGFloat top = titleHeight + kBelowTitle;
    for (std::size_t i = 0; i < tiles_.size(); ++i) {
        const CGFloat x = kTile * static_cast<CGFloat>(i % kTilesInLine);
        const std::size_t line = i / kTilesInLine;
        tiles_[i]->setFrame({isRightToLeft ? kWidth - kTile - x : x,
                             top + kTile * static_cast<CGFloat>(line), kTile, kTile});
    }
    const std::size_t lines = (tiles_.size() + kTilesInLine - 1) / kTilesInLine;
    height_->setConstant(top + kTile * static_cast<CGFloat>(lines));
}

void TileRow::applyAppearance(const PanelAppearance& appearance) {
    setSemanticContentAttribute(semanticAttribute(appearance));
    title_->setFont(appearance.smallFont());
    title_->setMinimumFontSize(PanelAppearance::kMinimumFontSize);
    placeTiles(kTitleHeight * appearance.textScale, appearance.isRightToLeft());
    for (const auto& tile : tiles_)
        tile->setContrast(appearance.contrast);
}

void TileRow::setTitle(std::string_view title, std::string_view detail) {
    std::string text(title);
    if (!detail.empty())
        text.append(" · ").append(detail);
    title_->setText(std::move(text));
}

void TileRow::setSelectedIndex(std::optional<std::size_t> index) {
    if (selected_ == index)
        return;
    selected_ = index;
    for (std::size_t i = 0; i < tiles_.size(); ++i)
        if (tiles_[i]->isSelected() != (i == selected_))
            tiles_[i]->setSelected(i == selected_);
}

void TileRow::choose(std::size_t index) {
    const auto self = refTo(this);
    setSelectedIndex(index);
    sendActionsForControlEvents(UIControlEventValueChanged);
}

void TileRow::setAccessibilityIdentifier(std::string identifier) {
    title_->setAccessibilityIdentifier(identifier + ".title");
    for (std::size_t i = 0; i < tiles_.size(); ++i)
        tiles_[i]->setAccessibilityIdentifier(identifier + "." + std::to_string(i));
    UIControl::setAccessibilityIdentifier(std::move(identifier));
}

} // namespace tesmar
