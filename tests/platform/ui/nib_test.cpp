#include "fixture.h"

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UINib.h"
#include "tesmar/platform/ui/internal/interface_file.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

namespace tesmar {
namespace {

// The font name picker's interface file connects and wakes its objects.
TEST_F(UITest, InterfaceFilesMakeObjectsWithAttributesAndConstraints) {
    registerPlatformClasses();
    std::string problem;
    const auto objects = instantiateInterface(R"(<interface>
        <object class="UIView">
          <rect key="frame" width="100" height="50"/>
          <array key="subviews">
            <object class="UIButton" id="lamp" title="Lamp" enabled="false"
                    translatesAutoresizingMaskIntoConstraints="false"/>
          </array>
          <constraints format="[lamp(44)]-10-|"/>
        </object>
      </interface>)",
                                              nullptr, problem);
    ASSERT_TRUE(objects) << problem;
    const auto view = as<UIView>(objects->front());
    view->layoutIfNeeded();
    const auto lamp = as<UIButton>(view->subviews()[0]);
    EXPECT_EQ(lamp->frame().minX(), 46);
    EXPECT_FALSE(lamp->isEnabled());
    EXPECT_EQ(lamp->titleForState(UIControlStateNormal), "Lamp");
}

TEST_F(UITest, UnsoundInterfaceFilesReportTheirProblem) {
    registerPlatformClasses();
    const auto repeated = [](int count, std::string_view text) {
        std::string all;
        while (count-- > 0)
            all += text;
        return all;
    };
    const std::string rules = repeated(1024, "<constraints format='[a(1)]'/>");
    const std::string many = repeated(1025, "<object class='UIView'/>");
    const std::string deep = repeated(65, "<object class='UIView'><array key='subviews'>");
    const std::string ends = repeated(65, "</array></object>");
    const auto view = [](const std::string& content) {
        return "<object class='UIView' id='a'>" + content + "</object>";
    };
    const std::pair<std::string, const char*> cases[] = {
        {"<object class='UIView'>", "mismatch"},
        {"<object class='Spoon'/>", "unknown class \"Spoon\""},
        {view("") + view(""), "used twice"},
        {view("<outlet property='x' destination='y'/>"), "leads nowhere"},
        {view("<outlet property='x' destination='a'/>"), "no outlet \"x\" for a UIView"},
        {"<object class='UIViewController' id='a'><outlet property='view' "
         "destination='a'/></object>",
         "no outlet \"view\" for a UIViewController"},
        {view("<constraints format='|[b]'/>"), "\"b\""},
        {view(rules), "too many objects and constraints"},
        {many, "too many objects"},
        {deep + ends, "too deep"},
        {repeated(1 << 20, " "), "larger than"}};
    for (const auto& [content, expected] : cases) {
        std::string problem;
        EXPECT_FALSE(
            instantiateInterface("<interface>" + content + "</interface>", nullptr, problem));
        EXPECT_NE(problem.find(expected), std::string::npos) << problem;
    }
    EXPECT_DEATH(UINib::nibWithNibName("nowhere", nullptr), "no interface file \"nowhere.xml\"");
}

} // namespace
} // namespace tesmar
