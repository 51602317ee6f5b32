# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash disable=SC2207

_quillet() {
    COMPREPLY=($(compgen -W \
        "--setup --settings --permission --background --diagnostics --doctor --json --help --version" \
        -- "${COMP_WORDS[COMP_CWORD]}"))
}
complete -F _quillet quillet

_quillet_backend() {
    local current=${COMP_WORDS[COMP_CWORD]}
    case "${COMP_WORDS[COMP_CWORD - 1]}" in
        --config) COMPREPLY=($(compgen -f -- "$current")) ;;
        --listen | --port | --host-name) COMPREPLY=() ;;
        *)
            COMPREPLY=($(compgen -W \
                "--listen --port --host-name --config --child --help --version" -- "$current"))
            ;;
    esac
}
complete -F _quillet_backend quillet-backend
