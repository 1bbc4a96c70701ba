# view: the HTML page of a lesson. What the page shows and does is tested in
# a browser (tests/browser); these cases test the program's side.
quillbank_cli_test(view.writes_page INPUTS water-cycle.xml STDOUT "" STDERR "" SCRIPT [[
"$QB" view water-cycle.xml -o out.html || exit $?
head -c 15 out.html | grep -q '^<!DOCTYPE html>' || { echo 'not a page' >&2; exit 9; }
grep -q '<title>The water cycle — évaporation &amp; rain</title>' out.html || { echo 'no title' >&2; exit 9; }
grep -c '<script' out.html | grep -q '^2$' || { echo 'not two scripts' >&2; exit 9; }
! grep -Eq '(src|href)="(https?:)?//' out.html || { echo 'an external reference' >&2; exit 9; }
]])
quillbank_cli_test(view.stdout ARGS view water-cycle.xml -o - INPUTS water-cycle.xml
                   STDOUT_MATCHES "^<!DOCTYPE html>.*\"sbs\":\\[\\[\"8B5D0F37-21C9-4A6E-8E4F-6A0C3B9D7101\",\"0\",\"title\",\"Where does rain come from\\?\"")
quillbank_cli_test(view.stdin ARGS view - -o - STDIN water-cycle.xml
                   STDOUT_MATCHES "\"file\":\"\\(standard input\\)\"")
quillbank_cli_test(view.broken ARGS view broken.xml -o out.html INPUTS broken.xml STATUS 2
                   STDERR error-broken.err ABSENT out.html)
quillbank_cli_test(view.not_a_lesson ARGS view not-a-lesson.xml -o out.html INPUTS not-a-lesson.xml STATUS 2
                   STDERR_MATCHES "^quillbank: not-a-lesson.xml: .+\n$" ABSENT out.html)
quillbank_cli_test(view.output_required ARGS view water-cycle.xml INPUTS water-cycle.xml STATUS 2
                   STDERR_MATCHES "--output is required")
quillbank_cli_test(view.failure_keeps_old_page INPUTS broken.xml STATUS 2 STDERR error-broken.err SCRIPT [[
echo old > out.html
"$QB" view broken.xml -o out.html
status=$?
[ "$(cat out.html)" = old ] || { echo 'the old page was replaced' >&2; exit 9; }
ls | grep -v -e '^out.html$' -e '^broken.xml$' && { echo 'a file was left behind' >&2; exit 9; }
exit $status
]])
# Lesson text lands in the page only escaped: the title element and the
# script data (the browser tests prove the rest, which the page's script
# builds as text).
quillbank_cli_test(view.escapes INPUTS view-hostile.xml SCRIPT [[
"$QB" view view-hostile.xml -o out.html || exit $?
grep -q '<title>&lt;/script&gt;&lt;script&gt;alert(1)&lt;/script&gt;</title>' out.html || { echo 'title' >&2; exit 9; }
grep -c '</script>' out.html | grep -q '^2$' || { echo 'a script element was ended early' >&2; exit 9; }
grep -q 'onmouseover=\\"alert(2)' out.html || { echo 'no escaped quote' >&2; exit 9; }
! grep -q "$(printf '\342\200\250')" out.html || { echo 'a raw line separator' >&2; exit 9; }
! grep -q '<script>alert' out.html || { echo 'markup from the lesson' >&2; exit 9; }
]])

# Everything info reads, view shows; what info cannot read gives its one-line
# error, exit status 2 and no page.
file(GLOB VIEW_INPUTS RELATIVE ${CLI_DATA} ${CLI_DATA}/*.xml)
quillbank_cli_test(view.every_sample INPUTS ${VIEW_INPUTS} SCRIPT [[
for f in *.xml; do
  if "$QB" info "$f" > /dev/null 2>&1; then
    "$QB" view "$f" -o "$f.html" 2> /dev/null || { echo "$f: info reads it, view fails" >&2; exit 9; }
    [ -s "$f.html" ] || { echo "$f: empty page" >&2; exit 9; }
  else
    "$QB" view "$f" -o "$f.html" 2> err
    status=$?
    [ $status -eq 2 ] || { echo "$f: status $status" >&2; exit 9; }
    [ "$(wc -l < err)" -eq 1 ] || { echo "$f: not one line" >&2; exit 9; }
    [ ! -e "$f.html" ] || { echo "$f: a page was left" >&2; exit 9; }
  fi
done
]])

# tree --format dot|svg
quillbank_cli_test(tree.dot ARGS tree --format dot water-cycle.xml INPUTS water-cycle.xml STDOUT tree-water-cycle.dot)
quillbank_cli_test(tree.dot_named_map ARGS tree --format dot --map Review water-cycle.xml INPUTS water-cycle.xml
                   STDOUT tree-review.dot)
quillbank_cli_test(tree.dot_missing_and_escapes ARGS tree --format dot view-hostile.xml INPUTS view-hostile.xml
                   STDOUT tree-hostile.dot)
quillbank_cli_test(tree.dot_problems ARGS tree --format dot problems.xml INPUTS problems.xml STDOUT tree-problems.dot)
quillbank_cli_test(tree.svg INPUTS water-cycle.xml SCRIPT [[
command -v dot > /dev/null || { echo 'Graphviz is not installed' >&2; exit 77; }
TMPDIR="$PWD" "$QB" tree --format svg water-cycle.xml > out.svg || exit $?
grep -q '<svg' out.svg || { echo 'not SVG' >&2; exit 9; }
[ "$(grep -c 'class="node"' out.svg)" -eq 9 ] || { echo 'not nine nodes' >&2; exit 9; }
[ "$(grep -c 'class="edge"' out.svg)" -eq 6 ] || { echo 'not six edges' >&2; exit 9; }
grep -q 'Where does rain come from? \[W1\]' out.svg || { echo 'no label' >&2; exit 9; }
ls | grep quillbank-graph && { echo 'a temporary file was left' >&2; exit 9; }
exit 0
]])
quillbank_cli_test(tree.svg_without_graphviz INPUTS water-cycle.xml STATUS 2 STDERR tree-svg-no-dot.err SCRIPT [[
mkdir empty
PATH="$PWD/empty" "$QB" tree --format svg water-cycle.xml
]])
quillbank_cli_test(tree.format_with_json ARGS tree --json --format dot water-cycle.xml INPUTS water-cycle.xml
                   STATUS 2 STDERR tree-format-json.err)
quillbank_cli_test(tree.format_unknown ARGS tree --format png water-cycle.xml INPUTS water-cycle.xml STATUS 2
                   STDERR_MATCHES "--format: png not in \\{text,dot,svg\\}")

# The page's script is a file of its own, checked as JavaScript.
quillbank_cli_test(view.script_syntax SCRIPT "command -v node > /dev/null || { echo 'node is not installed' >&2; exit 77; }
node --check ${PROJECT_SOURCE_DIR}/tools/quillbank/view/view.js")
