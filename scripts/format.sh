#!/usr/bin/env bash
# Keeps the C++ sources in the format of .clang-format.
#   bash scripts/format.sh          rewrites every file that differs
#   bash scripts/format.sh --check  lists the files that differ and fails, changing nothing
set -euo pipefail
cd "$(dirname "$0")/.."
formatter=$(command -v clang-format-14 || command -v clang-format || true)
if [ -z "$formatter" ]; then
    echo "clang-format is missing: bash scripts/setup.sh installs it" >&2
    exit 2
fi
mapfile -t files < <(git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'bench/*.h')
if [ "${1:-}" = "--check" ]; then
    differ=()
    for f in "${files[@]}"; do
        "$formatter" --style=file "$f" | cmp -s - "$f" || differ+=("$f")
    done
    if [ ${#differ[@]} -gt 0 ]; then
        echo "Not in the project's format (bash scripts/format.sh fixes them):" >&2
        printf '  %s\n' "${differ[@]}" >&2
        exit 1
    fi
    # A Turkish letter in a Latin-1 literal is read as two other letters: "Çek" never matches.
    if grep -nP 'QLatin1(String|StringView|Char)\((\"[^"]*|\x27)[^\x00-\x7F]' "${files[@]}" >&2; then
        echo "Turkish letters in a Latin-1 literal above: use QStringLiteral or u\"...\"_s" >&2
        exit 1
    fi
    echo "Format: ${#files[@]} files as .clang-format wants them"
else
    "$formatter" --style=file -i "${files[@]}"
fi
