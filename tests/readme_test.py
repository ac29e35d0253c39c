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
for link in re.findall(r"\]\(([^)#]+)\)", readme):
    if not link.startswith("http") and not (root / link).exists():
        problems.append("broken link: " + link)
print("\n".join(problems) or "the README is sound")
sys.exit(bool(problems))
