# Completion of kivtree for bash: source it, or put it where bash-completion looks.
_kivtree() {
    local word=${COMP_WORDS[COMP_CWORD]} options=
    if [ "$COMP_CWORD" = 1 ]; then
        COMPREPLY=($(compgen -W 'info ls dump get find diff merge merge3 check convert import stats view annotate salvage help version completion' -- "$word"))
        return
    fi
    case ${COMP_WORDS[1]} in
        info) options='--json -h --help --color --names --no-names --no-progress' ;;
        ls) options='-r --recursive -l --long --sort --json -h --help --color --names --no-names --no-progress' ;;
        dump) options='--all --children --depth -h --help --color --names --no-names --no-progress' ;;
        get) options='--raw --default -h --help --color --names --no-names --no-progress' ;;
        find) options='-k --key --kind --tag --temporality --value -e --regex -i --ignore-case --paths --count -m --max-count -h --help --color --names --no-names --no-progress' ;;
        diff) options='-q --quiet --stat --json --abs --rel --ignore-temporality --ignore-tag --limit -h --help --color --names --no-names --no-progress' ;;
        merge) options='-o --output --to -f --force --ours --theirs -h --help --color --names --no-names --no-progress' ;;
        merge3) options='-o --output --to -f --force --ours --theirs -h --help --color --names --no-names --no-progress' ;;
        check) options='--checksums --transient --strict --json -h --help --color --names --no-names --no-progress' ;;
        convert) options='--to -f --force -h --help --color --names --no-names --no-progress' ;;
        import) options='--to -f --force -h --help --color --names --no-names --no-progress' ;;
        stats) options='--top --svg -f --force --json -h --help --color --names --no-names --no-progress' ;;
        view) options='-o --output -f --force --format --depth --limit -h --help --color --names --no-names --no-progress' ;;
        annotate) options='--from --to -h --help --color --names --no-names --no-progress' ;;
        salvage) options='-o --output -f --force --no-repair -h --help --color --names --no-names --no-progress' ;;
        help) options='--all -h --help --color --names --no-names --no-progress' ;;
        version) options='-h --help --color --names --no-names --no-progress' ;;
        completion) options='-h --help --color --names --no-names --no-progress' ;;
    esac
    case ${COMP_WORDS[1]} in
        help) COMPREPLY=($(compgen -W 'info ls dump get find diff merge merge3 check convert import stats view annotate salvage help version completion' -- "$word")) ;;
        completion) COMPREPLY=($(compgen -W 'bash zsh fish' -- "$word")) ;;
    esac
    case $word in
        -*) COMPREPLY=($(compgen -W "$options" -- "$word")) ;;
        *) [ ${#COMPREPLY[@]} = 0 ] && COMPREPLY=($(compgen -f -- "$word")) ;;
    esac
}
complete -o filenames -F _kivtree kivtree
