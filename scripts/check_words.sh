#!/usr/bin/env bash
# Finds leftovers that must not reach the main branch: reminders, merge marks, paths of one machine and references to
# numbered parts of documents that are not in the repository.
set -euo pipefail
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"

# Each pattern is written so that it does not find itself.
patterns=(
  '\b(TO[D]O|FIX[M]E|X[X]X|HA[C]K)\b'
  '^(<{7}|>{7}) '
  '(/ho[m]e/|/wo[r]k/|/ro[o]t/)'
  '\bPa[r]t [0-9]+\.[0-9]+\b'
)
folders=()
for name in src include tools tests bench examples python scripts docs cmake data .ci dev README.md CMakeLists.txt; do
  if [[ -e "$name" ]]; then folders+=("$name"); fi
done

found=0
for pattern in "${patterns[@]}"; do
  if grep -rnIE --exclude-dir=__pycache__ -e "$pattern" "${folders[@]}"; then found=1; fi
done
if ((found)); then
  echo "check_words: remove the lines above" >&2
  exit 1
fi
echo "none in: ${folders[*]}"
