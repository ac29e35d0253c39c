// The extended panel as a host uses it, and a host's own subclass of the panel. What the viewer
// does with it is in tests/drive.
#include "panel_fixture.h"

#include "tesmar/platform/ui/UIScrollView.h"

namespace tesmar {
namespace {

CGRect frameOf(UIWindow& window, const std::string& identifier) {
    const UIView* const view = window.viewWithIdentifier(identifier);
    return view ? view->convertRectTo(view->bounds(), nullptr) : CGRect();
}

CGSize contentSize(UIWindow& window) {
    return dynamic_cast<UIScrollView&>(*window.viewWithIdentifier("containerScrollView"))
        .contentSize();
}

TEST_F(PanelTest, GroupsThatAreNotOfferedLeaveNoGap) {
    using enum TESMARExtension;
    const auto sizeWith = [](const Ref<TESMARViewController>& panel) {
        HeadlessHost host({640, 1200});
        host.window()->presentViewController(panel, false);
        host.render();
        return contentSize(*host.window()).height;
    };
    const CGFloat plain = sizeWith(make<TESMARViewController>());
    const std::pair<TESMARExtension, CGFloat> cases[] = {
        {none, 0},
        {sizes | fontStyles | undo | legibility, 0},
        {presets, 68 + 15},
        {edges, 10 + 1 + 15 + 68},
        {window, 10 + 1 + 15 + 68 + 10 + 15 + 2 + 29}};
    for (const auto& [extensions, added] : cases) {
        const auto panel = make<TESMARExtendedViewController>();
        panel->setExtensions(extensions);
        EXPECT_EQ(sizeWith(panel), plain + added) << static_cast<unsigned>(extensions);
    }
}

struct HostsPanel : TESMARExtendedViewController {
    explicit HostsPanel(RowPlace at) : place(at) {}
    void setupView() override {
        TESMARExtendedViewController::setupView();
        added = make<UIView>();
        added->addConstraintsWithVisualFormats({{"[row(>=100)]"}, {"V:[row(30)]"}},
                                               {{"row", added}});
        addRows(place, {{.identifier = "added", .view = added, .gap = 7}});
    }
    const RowPlace place;
    Ref<UIView> added;
    using TESMARViewController::RowPlace;
};

// The distances from the view above to the row, and from it to the view below.
TEST_F(PanelTest, AHostsSubclassAddsRows) {
    using enum HostsPanel::RowPlace;
    const std::tuple<HostsPanel::RowPlace, const char*, CGFloat, const char*, CGFloat> cases[] = {
        {fixed, "topSeparator", 7, "containerScrollView", 7},
        {first, "preset", 7, "textColorPicker", 7},
        {last, "windowColorOpacityStepper", 7, "bottomSeparator", 20},
        {footer, "bottomSeparator", 7, nullptr, 15}};
    for (const auto& [place, above, gapAbove, below, gapBelow] : cases) {
        HeadlessHost host({640, 900});
        const auto panel = std::make_shared<HostsPanel>(place);
        ASSERT_TRUE(panel->init());
        host.window()->presentViewController(panel, false);
        host.render();
        const CGRect row = frameOf(*host.window(), "added");
        EXPECT_EQ(row.size.height, 30);
        EXPECT_EQ(row.minY() - frameOf(*host.window(), above).maxY(), gapAbove) << above;
        const CGRect root = panel->view()->convertRectTo(panel->view()->bounds(), nullptr);
        const CGFloat next = below ? frameOf(*host.window(), below).minY() : root.maxY();
        EXPECT_EQ(next - row.maxY(), gapBelow) << above;
    }
}

TEST_F(PanelTest, HostPresetsAreOfferedAndTakenAsTheyAre) {
    HeadlessHost host({640, 900});
    const auto odd = NSDictionary::dictionaryWithEntries(
        {{std::string(NSForegroundColorAttributeName), UIColor::greenColor()},
         {std::string(TESMAREdgeAttributeName), UIColor::redColor()},
         {"host.key", NSString::stringWithString("kept")}});
    const auto panel = make<TESMARExtendedViewController>();
    panel->setHostPresets({{"Nothing", nullptr}, {"Odd", odd}, {"A", odd}, {"B", odd}, {"C", odd}});
    host.window()->presentViewController(panel, false);
    host.tap(centerOf(*host.window(), "preset.6"));
    host.advance(1);
    EXPECT_TRUE(panel->CCStyleAttributes()->isEqual(odd.get()));
    EXPECT_TRUE(panel->canUndo());
    EXPECT_GT(frameOf(*host.window(), "preset.8").minY(), // the second line
              frameOf(*host.window(), "preset.7").minY());
    EXPECT_FALSE(host.window()->viewWithIdentifier("preset.10"));
}

} // namespace
} // namespace tesmar
