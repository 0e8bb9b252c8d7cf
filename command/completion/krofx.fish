# Completion of krofx for fish: every answer comes from the command itself.
function __krofx_complete
    set -l words (commandline -opc) (commandline -ct)
    for answer in (command $words[1] complete -- $words[2..-1] 2>/dev/null)
        if test "$answer" = ':files'
            __fish_complete_path (commandline -ct)
        else
            printf '%s\n' $answer
        end
    end
end
complete -c krofx -f -a '(__krofx_complete)'
