# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Completion of draxel and draxelctl for bash, with the package bash-completion.
_draxel()
{
    local cur words cword candidate program
    _get_comp_words_by_ref -n : cur words cword
    program=$(readlink -f -- "$(type -P -- "${words[0]}")") || return
    [[ -x ${program%/*}/complete ]] || return

    COMPREPLY=()
    while IFS=$'\t' read -r candidate _; do
        case $candidate in
            "@files") _filedir ;;
            "@files "*) _filedir "@(${candidate//[@ ]/|})" ;;
            "@folders") _filedir -d ;;
            "$cur"*) COMPREPLY+=("$candidate") ;;
        esac
    done < <("${program%/*}/complete" "${program##*/}" "${words[@]:1:cword}")
    __ltrim_colon_completions "$cur"
}
complete -F _draxel draxel draxelctl
