// A title above tiles of which at most one is selected. A tap on a tile selects it and sends
// UIControlEventValueChanged. Setting the selection from code sends no event.
#pragma once

#include "tesmar/extended/internal/StyleTile.h"

#include <optional>

namespace tesmar {

class TileRow : public UIControl {
    TESMAR_CLASS

  public:
    // Eight tiles fill a line; more go on in the next one.
    bool initWithTiles(std::string_view title, StyleTile::Shape shape, std::size_t count);

    std::size_t tileCount() const { return tiles_.size(); }
    StyleTile& tile(std::size_t index) const { return *tiles_[index]; }
    // No value: none is selected.
    std::optional<std::size_t> selectedIndex() const { return selected_; }
    void setSelectedIndex(std::optional<std::size_t> index);

    // The second text follows the first.
    void setTitle(std::string_view title, std::string_view detail = {});
    const UILabel& titleLabel() const { return *title_; }
    // Sets the title's font, the order of the tiles and their contrast.
    void applyAppearance(const PanelAppearance& appearance);

    bool isFocusGroup() const override { return true; }
    // Also names the title ("<identifier>.title") and the tiles ("<identifier>.0" …).
    void setAccessibilityIdentifier(std::string identifier) override;

  protected:
    void stateChanged() override {} // draws nothing itself

  private:
    void placeTiles(CGFloat titleHeight, bool isRightToLeft);
    void choose(std::size_t index);

    std::vector<Ref<StyleTile>> tiles_;
    std::vector<UIControlListener> taps_;
    std::optional<std::size_t> selected_;
    Ref<UILabel> title_;
    Ref<NSLayoutConstraint> height_;
};

} // namespace tesmar
