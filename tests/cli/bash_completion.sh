# Loads the completion given as $1 and prints what it offers for a few
# command lines, one line each.
. "$1"
complete_words() {
  COMP_WORDS=("$@")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  _quillbank
  echo "${COMPREPLY[*]}"
}
complete_words quillbank n
complete_words quillbank --max-size 1G ch
complete_words quillbank normalize --k
complete_words quillbank check --li
complete_words quillbank tree --m
complete_words quillbank grep -
complete_words quillbank v
complete_words quillbank tree --format ''
complete_words quillbank tree --f
