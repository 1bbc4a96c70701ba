# Installs the build given as $1 into ./prefix and shows what the tool's
# documentation left there; the program to ask for help is $QB.
cmake --install "$1" --prefix "$PWD/prefix" > install.log || exit 9
cd prefix || exit 9
for f in share/man/man1/quillbank.1 share/bash-completion/completions/quillbank share/doc/quillbank/check.md \
         share/doc/quillbank/quillbank-report.schema.json; do
  [ -f "$f" ] && echo "installed $f"
done
groff -man -Tutf8 -ww -z share/man/man1/quillbank.1 2>&1 || exit 9
for command in info tree props clear normalize duplicate check diff ls grep convert view; do
  grep -q "^.BI \"$command " share/man/man1/quillbank.1 || echo "the manual page lacks $command"
done
# Where check --help sends the reader, and that the file is there.
"$QB" check --help | tr -s ' \n' '  ' | grep -o 'check.md (installed in share/doc/quillbank)'
