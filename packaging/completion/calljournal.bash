# Completes the command line of calljournal in bash. `source` it in ~/.bashrc, or install it as
# /usr/share/bash-completion/completions/calljournal. For zsh, in ~/.zshrc:
#   autoload -U +X bashcompinit && bashcompinit && source .../calljournal.bash

_calljournal_filters='--since --until --tz --number --search --list --direction --viewed --min-duration'

# _calljournal_options COMMAND [SUBCOMMAND]: its options.
_calljournal_options() {
    case "$1${2:+ $2}" in
        '') echo --help --version ;;
        serve) echo --config --listen --switch --sip --set --data --help ;;
        sip) echo --baresip --listen --log-level --data --help ;;
        switch) echo --listen --scenario --loop --rate --call-log --echo-deletions --callee --answer --log-messages --data --help ;;
        demo) echo --config --listen --set --data --help ;;
        list) echo --limit --search --ids --json --csv --data --help ;;
        show | watch | settings) echo --json --data --help ;;
        call) echo --entry --emergency --json --data --help ;;
        calls) echo "$_calljournal_filters" --sort --limit --json --data --help ;;
        stats) echo "$_calljournal_filters" --by --limit --json --data --help ;;
        delete) echo --all "$_calljournal_filters" --data --help ;;
        import) echo --format --columns --timezone --time-format --own --unviewed --json --data --help ;;
        backup) echo --force --data --help ;;
        export) echo --format "$_calljournal_filters" --sort --limit --data --help ;;
        'contacts import') echo --json --data --help ;;
        'contacts add')
            echo --first-name --surname --office --mobile --private --office2 --email --company --job-function --group --address \
                --address2 --json --data --help
            ;;
        'contacts list') echo --search --limit --json --data --help ;;
        'contacts export') echo --format --data --help ;;
        *) echo --data --help ;;
    esac
}

_calljournal() {
    local lists='missed dialled received forwarded callbacks'
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local command='' subcommand='' list='' words='' each at
    COMPREPLY=()
    for ((at = 1; at < COMP_CWORD; at++)); do
        each=${COMP_WORDS[at]}
        if [[ -z $command && $each != -* ]]; then
            command=$each
        elif [[ $command == contacts && -z $subcommand && " import add list export " == *" $each "* ]]; then
            subcommand=$each
        elif [[ " $lists " == *" $each "* ]]; then
            list=$each
        fi
    done

    case $before in
        --data)
            # shellcheck disable=SC2207  # mapfile is not known to zsh
            COMPREPLY=($(compgen -d -- "$word"))
            return
            ;;
        --config | --scenario | --sip)
            # shellcheck disable=SC2207
            COMPREPLY=($(compgen -f -- "$word"))
            return
            ;;
        --format)
            words='csv json jsonl ical'
            [[ $command == contacts ]] && words='vcf csv'
            ;;
        --list) words='missed dialled received forwarded' ;;
        --direction) words='incoming outgoing' ;;
        --viewed) words='true false' ;;
        --sort) words='start -start' ;;
        --callee) words='takes rings busy' ;;
        --by) words='day hour weekday party' ;;
        --since | --until | --tz | --number | --min-duration) return ;;
        --listen | --switch | --baresip | --log-level | --set | --rate | --answer | --limit | --search) return ;;
        *)
            if [[ $word == -* ]]; then
                words=$(_calljournal_options "$command" "$subcommand")
            elif [[ -z $command ]]; then
                words='serve switch sip demo list calls stats show watch call answer hangup viewed delete export import backup restore contacts settings'
            elif [[ $command == contacts && -z $subcommand ]]; then
                words='import add list export'
            elif [[ $subcommand == import ]]; then
                # shellcheck disable=SC2207
                COMPREPLY=($(compgen -f -- "$word"))
                return
            elif [[ -z $list && " list delete export " == *" $command "* ]]; then
                words=$lists
            fi
            ;;
    esac
    # shellcheck disable=SC2207
    COMPREPLY=($(compgen -W "$words" -- "$word"))
}

complete -F _calljournal calljournal
