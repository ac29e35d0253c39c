#include "fixture.h"

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UINib.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

namespace tesmar {
namespace {

class Panel : public UIView {
    TESMAR_CLASS

  public:
    void setLamp(const Ref<UIButton>& lamp) { lamp_ = lamp; }
    void awakeFromNib() override { lampAtWaking = lamp_.lock(); }
    Ref<UIButton> lampAtWaking;

  private:
    WeakRef<UIButton> lamp_;
};

Class& Panel::classObject() {
    static Class type("Panel", &UIView::classObject(), allocator<Panel>(),
                      {method<&Panel::setLamp>("setLamp:")});
    return type;
}

TEST_F(UITest, InterfaceFilesMakeConnectAndWakeObjects) {
    registerPlatformClasses();
    registerClass(Panel::classObject());
    std::string problem;
    const auto objects = instantiateInterface(R"(<interface>
        <object class="Panel" id="panel">
          <rect key="frame" width="100" height="50"/>
          <color key="backgroundColor" red="1"/>
          <array key="subviews">
            <object class="UIButton" id="lamp" title="Lamp" enabled="false"
                    translatesAutoresizingMaskIntoConstraints="false"/>
          </array>
          <outlet property="lamp" destination="lamp"/>
          <constraints format="|-10-[lamp(44)]"/>
        </object>
        <object class="UILabel" text="second"/>
      </interface>)",
                                              nullptr, problem);
    ASSERT_TRUE(objects) << problem;
    ASSERT_EQ(objects->size(), 2u);
    const auto panel = as<Panel>(objects->front());
    ASSERT_TRUE(panel && panel->lampAtWaking);
    panel->layoutIfNeeded();
    EXPECT_EQ(panel->lampAtWaking->frame().minX(), 10);
    EXPECT_EQ(panel->lampAtWaking->frame().size.width, 44);
    EXPECT_FALSE(panel->lampAtWaking->isEnabled());
    EXPECT_EQ(panel->lampAtWaking->titleForState(UIControlStateNormal), "Lamp");
}

TEST_F(UITest, UnsoundInterfaceFilesSayWhatIsWrong) {
    registerPlatformClasses();
    std::string deep;
    for (int i = 0; i < 100; ++i)
        deep += "<object class='UIView'><array key='subviews'>";
    for (int i = 0; i < 100; ++i)
        deep += "</array></object>";
    std::string rules;
    for (int i = 0; i < 1025; ++i)
        rules += "<constraints format='[a(1)]'/>";
    const std::pair<std::string, std::string> cases[] = {
        {"<interface><object class='UIView'>", "mismatch"},
        {"<interface><object class='Spoon'/></interface>", "unknown class \"Spoon\""},
        {"<interface><object class='UIView' id='a'/><object class='UIView' id='a'/></interface>",
         "used twice"},
        {"<interface><object class='UIView'><outlet property='x' destination='y'/></object>"
         "</interface>",
         "leads nowhere"},
        {"<interface><object class='UIView' id='a'><outlet property='x' destination='a'/></object>"
         "</interface>",
         "no outlet \"x\""},
        {"<interface><object class='UIView' id='a'><constraints format='|[b]'/></object>"
         "</interface>",
         "b"},
        {"<interface><object class='UIViewController' id='a'>"
         "<outlet property='view' destination='a'/></object></interface>",
         "no outlet \"view\" for a UIViewController"},
        {"<interface><object class='UIView' id='a'>" + rules + "</object></interface>",
         "too many constraints"},
        {"<interface>" + deep + "</interface>", "too deep"}};
    for (const auto& [text, expected] : cases) {
        std::string problem;
        EXPECT_FALSE(instantiateInterface(text, nullptr, problem)) << text;
        EXPECT_NE(problem.find(expected), std::string::npos) << problem;
    }
    EXPECT_DEATH(UINib::nibWithNibName("nowhere", nullptr), "no interface file \"nowhere.xml\"");
}

} // namespace
} // namespace tesmar
