// Measures layout for chains and grids of boxes and for a screen like the settings panel's: "build"
// is the first layout of a new engine, with its allocations; "rebuild" a layout after invalidate();
// "resize" a layout after only the root's width has changed.
#include "tesmar/platform/layout/internal/LayoutEngine.h"
#include "tests/platform/layout/LayoutBox.h"

#include <benchmark/benchmark.h>

#include <string>

namespace tesmar {
namespace {

using Boxes = std::shared_ptr<LayoutBox>;
using Views = NSLayoutConstraint::Views;

std::string boxName(int i) {
    return "b" + std::to_string(i);
}

Boxes rootOf(int count, Views& views, double width) {
    auto root = std::make_shared<LayoutBox>("root");
    root->frame = {0, 0, width, 600};
    for (int i = 0; i < count; ++i)
        views[boxName(i)] = root->add(boxName(i));
    return root;
}

// A row of boxes; `first` and `others` follow the boxes' names inside the brackets.
Boxes chain(int count, const std::string& first, const std::string& others, const char* end,
            double width) {
    Views views;
    auto root = rootOf(count, views, width);
    std::string format = "|-";
    for (int i = 0; i < count; ++i)
        format += (i ? "-8-[" : "[") + boxName(i) + (i ? others : first) + "]";
    root->constrain(format + end, views);
    for (int i = 0; i < count; ++i)
        root->constrain("V:|-10-[" + boxName(i) + "(30)]", views);
    return root;
}

Boxes fixedChain(int count) {
    return chain(count, "(20)", "(20)", "", 480);
}

Boxes equalChain(int count) {
    return chain(count, "", "(==b0)", "-|", 28.0 * count + 480);
}

Boxes tightEqualChain(int count) {
    return chain(count, "", "(==b0)", "-|", 320);
}

Boxes contentChain(int count) {
    auto root = chain(count, "", "", "->=20-|", 28.0 * count + 480);
    for (auto& box : root->children)
        box->intrinsic[0] = 20;
    return root;
}

// Ten columns, with boxes of equal width in a row; all rows have the height of the first.
Boxes grid(int count) {
    Views views;
    auto root = rootOf(count, views, 480);
    const int rows = count / 10;
    for (int row = 0; row < rows; ++row) {
        std::string format = "|-";
        for (int column = 0; column < 10; ++column)
            format += (column ? "-8-[" : "[") + boxName(row * 10 + column) +
                      (column ? "(==" + boxName(row * 10) + ")]" : "]");
        root->constrain(format + "-|", views,
                        NSLayoutFormatAlignAllTop | NSLayoutFormatAlignAllBottom);
    }
    std::string column = "V:|-";
    for (int row = 0; row < rows; ++row)
        column += (row ? "-4-[" : "[") + boxName(row * 10) + (row ? "(==b0)]" : "]");
    root->constrain(column + "-|", views);
    root->frame.size.height = 10 * rows + 100;
    return root;
}

// About 25 boxes with intrinsic sizes, in rows, most of them in a scroll view.
Boxes panel(int) {
    auto root = std::make_shared<LayoutBox>("root");
    root->frame = {0, 0, 480, 320};
    Views views;
    const auto box = [&](const Boxes& parent, const std::string& name, double width,
                         double height) {
        auto made = parent->add(name);
        made->intrinsic[0] = width;
        made->intrinsic[1] = height;
        views[name] = made;
        return made;
    };
    for (const char* name : {"label", "toggle", "reset"})
        box(root, name, 80, 30);
    for (const char* name : {"top", "bottom", "scroll"})
        views[name] = root->add(name);
    auto scroll = root->children.back();
    scroll->isScroll = true;
    root->constrain("|-20-[label]-20-[toggle]->=20-[reset]-20-|", views,
                    NSLayoutFormatAlignAllCenterY);
    for (const char* name : {"scroll", "top", "bottom"})
        root->constrain("|-20-[" + std::string(name) + "]-20-|", views);
    root->constrain("V:|-15-[label]-15-[top(1)]-0-[scroll]-0-[bottom(1)]-15-|", views);
    std::string column = "V:|-15-";
    const auto rowFormat = [](const std::string& n) {
        return "|-0-[name" + n + "]-35-[value" + n + "]->=20-[step" + n + "]-0-|";
    };
    for (int row = 0; row < 6; ++row) {
        const std::string n = std::to_string(row);
        for (const std::string part : {"name", "value", "step"})
            box(scroll, part + n, 90, 29);
        scroll->constrain(rowFormat(n), views, NSLayoutFormatAlignAllCenterY);
        column += "[name" + n + "]-10-";
    }
    views["rule"] = scroll->add("rule");
    scroll->constrain("|-0-[rule(400)]-0-|", views);
    scroll->constrain(column + "[rule(1)]-20-|", views);
    return root;
}

// Turns a row like the panel's from text into constraints.
void parse(benchmark::State& state) {
    Views views;
    const auto root = rootOf(3, views, 480);
    for (auto _ : state)
        benchmark::DoNotOptimize(NSLayoutConstraint::constraintsWithVisualFormat(
            "H:|-20-[b0(>=80@750)]-20-[b1(==b0)]->=20-[b2]-20-|", NSLayoutFormatAlignAllCenterY, {},
            views));
}
BENCHMARK(parse);

template <Boxes (*make)(int)>
void build(benchmark::State& state) {
    const auto root = make(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        LayoutEngine engine;
        engine.layout(*root);
        benchmark::DoNotOptimize(root->children.back()->frame);
    }
}

template <Boxes (*make)(int)>
void rebuild(benchmark::State& state) {
    const auto root = make(static_cast<int>(state.range(0)));
    LayoutEngine engine;
    for (auto _ : state) {
        engine.invalidate();
        engine.layout(*root);
    }
}

template <Boxes (*make)(int)>
void resize(benchmark::State& state) {
    const auto root = make(static_cast<int>(state.range(0)));
    LayoutEngine engine;
    engine.layout(*root);
    double change = 1;
    for (auto _ : state) {
        root->frame.size.width += change;
        change = -change;
        engine.layout(*root);
    }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const int count : {50, 100, 200, 400, 800})
        benchmark->Arg(count);
    benchmark->Unit(benchmark::kMicrosecond);
}

#define TESMAR_MEASURE(make)                                                                       \
    BENCHMARK(build<make>)->Name(#make "/build")->Apply(sizes);                                    \
    BENCHMARK(rebuild<make>)->Name(#make "/rebuild")->Apply(sizes);                                \
    BENCHMARK(resize<make>)->Name(#make "/resize")->Apply(sizes)

TESMAR_MEASURE(fixedChain);
TESMAR_MEASURE(equalChain);
TESMAR_MEASURE(tightEqualChain);
TESMAR_MEASURE(contentChain);
TESMAR_MEASURE(grid);

BENCHMARK(build<panel>)->Name("panel/build")->Arg(25)->Unit(benchmark::kMicrosecond);
BENCHMARK(rebuild<panel>)->Name("panel/rebuild")->Arg(25)->Unit(benchmark::kMicrosecond);
BENCHMARK(resize<panel>)->Name("panel/resize")->Arg(25)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tesmar
