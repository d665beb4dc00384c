#!/usr/bin/env bash
# Keeps the layers of src/ apart. From the bottom up:
#
#   platform                              interfaces, Qt and fake implementations
#   core                                  the document, its files and settings
#   editor  trunk  search  link           rules of editing, trunking, search; the line
#   sim  vcontrol  importexport  print    virtual scanner, control loop, imports, reports
#   ui                                    every window and widget
#   app                                   the programs' main()s and kestractl's commands
#
# A file includes its own folder and the folders of lower rows only (folders of
# one row stay out of each other), and nothing between core and print includes
# Qt, so that the logic builds and is tested without it.
#
# Usage: scripts/check-layers.sh [SRC-FOLDER]   (default: src/ of this checkout)
# Prints every include that breaks a rule and exits 1 if there is one.
set -uo pipefail

src="${1:-$(dirname "$0")/../src}"

row() {
    case "$1" in
    platform) echo 0 ;;
    core) echo 1 ;;
    editor | trunk | search | link) echo 2 ;;
    sim | vcontrol | importexport | print) echo 3 ;;
    ui) echo 4 ;;
    app) echo 5 ;;
    *) echo -1 ;;
    esac
}

faults=0
fault() {
    echo "$1"
    faults=$((faults + 1))
}

while IFS= read -r file; do
    rel="${file#"$src"/}"
    own="${rel%%/*}"
    own_row=$(row "$own")
    if [[ "$own_row" == -1 || "$rel" != */* ]]; then
        fault "$rel: not in a folder of the layers"
        continue
    fi
    line_no=0
    while IFS= read -r line; do
        line_no=$((line_no + 1))
        [[ "$line" =~ ^[[:space:]]*#[[:space:]]*include[[:space:]]*([\"\<])([^\"\>]*) ]] || continue
        kind="${BASH_REMATCH[1]}"
        target="${BASH_REMATCH[2]}"
        if [[ "$kind" == "<" ]]; then
            # Qt's headers all start with a Q.
            if [[ "$target" == Q* ]] && ((own_row >= 1 && own_row <= 3)); then
                fault "$rel:$line_no: includes <$target>: $own is plain C++"
            elif [[ "$target" == Q* && "$own" == platform && "$rel" != platform/qt/* ]]; then
                fault "$rel:$line_no: includes <$target>: only platform/qt uses Qt"
            fi
            continue
        fi
        if [[ "$target" == ../* ]]; then
            fault "$rel:$line_no: includes \"$target\": name includes from src/"
            continue
        fi
        [[ "$target" == */* ]] || continue # a file of its own folder
        folder="${target%%/*}"
        folder_row=$(row "$folder")
        if [[ "$folder_row" == -1 ]]; then
            fault "$rel:$line_no: includes \"$target\": not a folder of src/"
        elif [[ "$folder" != "$own" ]] && ((folder_row >= own_row)); then
            fault "$rel:$line_no: includes \"$target\": $folder is not below $own"
        elif [[ "$own" == platform && "$rel" != platform/qt/* && "$target" == platform/qt/* ]]; then
            fault "$rel:$line_no: includes \"$target\": only platform/qt uses Qt"
        fi
    done <"$file"
done < <(find "$src" -type f \( -name '*.h' -o -name '*.cpp' \) | sort)

if ((faults > 0)); then
    echo "check-layers: $faults include(s) break the layers of src/"
    exit 1
fi
echo "check-layers: every include of src/ keeps to the layers"
