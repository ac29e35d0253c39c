"""What the README shows must run: its listing is the example's source, and its links lead somewhere."""
import pathlib
import re
import sys

root = pathlib.Path(__file__).resolve().parent.parent
readme = (root / "README.md").read_text()
listing = re.search(r"```cpp\n(.*?)```", readme, re.S).group(1)
example = (root / "examples/03-in-your-own-loop/main.cpp").read_text()
problems = [] if listing in example else ["the listing is not examples/03-in-your-own-loop"]
if listing.count("\n") > 40:
    problems.append("the listing is longer than 40 lines")
own_reader = re.search(r"```cpp\n(.*?)```", (root / "docs/accessibility.md").read_text(), re.S).group(1)
if own_reader not in (root / "examples/04-your-own-screen-reader/main.cpp").read_text():
    problems.append("the listing of docs/accessibility.md is not examples/04-your-own-screen-reader")
for link in re.findall(r"\]\(([^)#]+)\)", readme):
    if not link.startswith("http") and not (root / link).exists():
        problems.append("broken link: " + link)
print("\n".join(problems) or "the README is sound")
sys.exit(bool(problems))
