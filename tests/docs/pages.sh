#!/usr/bin/env bash
# The pages of docs/ tell what there is: every step, every operation; links lead somewhere.
source "$(dirname "$0")/../packaging/common.sh"
cd "$sources"
status=0
complain() {
  echo "$*" >&2
  status=1
}

if ! diff <(scripts/host-operations) docs/host-operations.md >&2; then
  complain "docs/host-operations.md is not what scripts/host-operations prints"
fi

steps=0
while IFS= read -r step; do
  steps=$((steps + 1))
  grep -q "^### $step " docs/steps.md || complain "docs/steps.md does not tell of $step"
done < <("$build/bin/tgx" actions | sed -n 's/^  [0-9][0-9a-fx]* *\([a-z-]*\).*/\1/p')
[ "$steps" -ge 28 ] || complain "only $steps steps were found"

for page in README.md CONTRIBUTING.md docs/*.md; do
  while IFS= read -r link; do
    [ -e "$(dirname "$page")/$link" ] || complain "$page: nothing is at $link"
  done < <(links_of "$page")
done

# Every page can be reached from README.md.
seen=' '
reach() {
  case $seen in *" $1 "*) return ;; esac
  seen+="$1 "
  local link
  while IFS= read -r link; do
    case $link in
      docs/*.md) reach "$link" ;;
      *.md) if [ "${1%/*}" = docs ]; then reach "docs/$link"; fi ;;
    esac
  done < <(links_of "$1")
}
reach README.md
for page in docs/*.md; do
  case $seen in *" $page "*) ;; *) complain "no way leads from README.md to $page" ;; esac
done
exit $status
