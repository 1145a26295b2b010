# Completion for KV_Schau in bash: commands and options as the program's own help names them, and paths.

_kv_schau() {
  local word=${COMP_WORDS[COMP_CWORD]} command="" i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      -*) ;;
      *)
        command=${COMP_WORDS[i]}
        break
        ;;
    esac
  done
  COMPREPLY=()
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$1" ${command:+"$command"} --help 2>/dev/null |
      grep -oE '^ +-[^ ]+' | tr ', ' '\n\n')" -- "$word")
    return
  fi
  if [[ -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$1" --help 2>/dev/null |
      sed -n '/^Befehle:/,/^$/s/^  \([a-z][a-z-]*\).*/\1/p')" -- "$word")
  fi
  mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.sys' -- "$word")
}
complete -o filenames -F _kv_schau KV_Schau
