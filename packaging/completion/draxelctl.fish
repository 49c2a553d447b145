# SPDX-License-Identifier: MIT
# Completion of draxel and draxelctl for fish.
function __draxel_complete
    set -l words (commandline -opc)
    set -l current (commandline -ct)
    set -l program (realpath (command -v $words[1])); or return
    set -l helper (dirname $program)/complete
    test -x $helper; or return
    for line in ($helper (basename $program) $words[2..-1] "$current")
        switch $line
            case '@files' '@files *'
                set -l suffixes (string split ' ' -- $line)[2..-1]
                __fish_complete_path "$current" | string match -r '.*/(?:\t.*)?$'
                if test (count $suffixes) -eq 0
                    __fish_complete_path "$current" | string match -rv '.*/(?:\t.*)?$'
                else
                    __fish_complete_path "$current" | string match -r '.*\.(?:'(string join '|' $suffixes)')(?:\t.*)?$'
                end
            case '@folders'
                __fish_complete_directories "$current"
            case '*'
                echo $line
        end
    end
end
complete -c draxel -f -a '(__draxel_complete)'
complete -c draxelctl -f -a '(__draxel_complete)'
