"""The Python package over the library that was built. TESMAR_LIBRARY names it."""
import sys
import threading
import unittest

import tesmar


class PanelTest(unittest.TestCase):
    def setUp(self):
        tesmar.init("org.tesmar.test")
        self.calls = []
        self.now = (tesmar.deadline() or 0) + 1

    def tap(self, panel, identifier="textColorPicker.4"):
        x, y, width, height = panel.locate(identifier)
        panel.touch(tesmar.Phase.BEGAN, 1, x + width / 2, y + height / 2, self.now)
        panel.touch(tesmar.Phase.ENDED, 1, x + width / 2, y + height / 2, self.now)

    def test_a_session(self):
        with tesmar.Panel(600, 800, 2, on_style=self.calls.append, on_captions=self.calls.append,
                          on_leave=lambda: self.calls.append("left"),
                          on_gone=lambda: panel.close()) as panel:
            self.assertIsNone(panel.visible_bounds)
            panel.present(animated=False)
            tesmar.advance(self.now)
            rects = panel.render()
            self.assertTrue(any(panel.pixels) and rects)
            self.tap(panel)
            self.tap(panel, "CCSwitch")
            self.assertEqual(self.calls[0].text, tesmar.Color(1, 1, 0, 1))
            self.assertEqual(panel.style, self.calls[0])
            self.assertTrue(panel.key(tesmar.Key.BACK, self.now))
            self.assertEqual(self.calls[1:], [True, "left"])
            panel.set_size(300, 300, 1)
            self.assertEqual(len(panel.pixels), 4 * 300 * 300)
            panel.render()
            tesmar.advance(self.now + 1)
        with self.assertRaises(ValueError):
            panel.present()

    def test_what_callbacks_raise_comes_out(self):
        kept = []

        def fail(style):
            kept.append(style)
            raise KeyError("the host's")

        with tesmar.Panel(600, 800, 2, load=lambda: None, save=fail) as panel:
            panel.present(animated=False)
            tesmar.advance(self.now)
            with self.assertRaises(KeyError):
                self.tap(panel)
            self.assertEqual(panel.style, kept[0])  # the library went on
            tesmar.advance(self.now + 1)

    def test_a_dropped_panel_is_closed(self):
        panel = tesmar.Panel(600, 800, 2, on_leave=lambda: self.calls.append("left"))
        tesmar.advance(self.now)
        panel.set_auto_hide(1)
        panel.present(animated=False)
        del panel
        tesmar.advance(self.now + 9)
        self.assertEqual(self.calls, [])

    def test_failures_are_exceptions(self):
        problems = []

        def elsewhere():
            try:
                tesmar.advance(1)
            except tesmar.WrongThread as problem:
                problems.append(problem)

        thread = threading.Thread(target=elsewhere)
        thread.start()
        thread.join()
        self.assertEqual(len(problems), 1)
        with self.assertRaisesRegex(ValueError, "line 1"):
            tesmar.Style.from_json("{")
        with self.assertRaises(ValueError):
            tesmar.Panel(0, 5)
        style = tesmar.Style(tesmar.Color(1, 0, 0), font_name="Courier", font_size=20, edge="raised")
        self.assertEqual(tesmar.Style.from_json(style.to_json()), style)
        self.assertTrue(style.font.file.endswith("NimbusMonoPS-Regular.otf"))
        pixels = bytearray(4 * 100 * 50)
        style.draw("text", pixels, 100, 1, (0, 0, 100, 50))
        self.assertTrue(any(pixels))
        with self.assertRaises(ValueError):
            style.draw("text", pixels[:100], 100, 1, (0, 0, 100, 50))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
