#compdef kivtree
# Completion of kivtree for zsh: put it as _kivtree into a folder of $fpath.
_kivtree() {
    if (( CURRENT == 2 )); then
        local -a verbs=(
            'info:tell what a file is and what is in it'
            'ls:list the children of a node'
            'dump:show a tree to read'
            'get:print one value'
            'find:find nodes by key, kind, tag, temporality or value'
            'diff:show what differs between two trees'
            'merge:bring into a tree what another one has and it lacks'
            'merge3:merge what two trees have changed since a third one'
            'check:find damage, what a save would lose, and limits'
            'convert:write a tree in another form'
            'import:make a tree of any JSON document'
            'stats:tell where the bytes are'
            'view:make a page or a drawing of a tree, or of two'
            'annotate:show a file byte by byte'
            'salvage:read what is left of a damaged file'
            'help:print help on a verb, or on all'
            'version:print the version'
            'completion:print a completion script for a shell'
        )
        _describe verb verbs
        return
    fi
    local verb=$words[2]
    shift words
    (( CURRENT-- ))
    case $verb in
        info) _arguments \
            '--json[print a JSON object]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        ls) _arguments \
            '-r[list all nodes below, not the children alone]:value:_files' \
            '--recursive[list all nodes below, not the children alone]:value:_files' \
            '-l[show more of each value]:value:_files' \
            '--long[show more of each value]:value:_files' \
            '--sort[the order: key, kind, tag, temporality or size]:value:_files' \
            '--json[one JSON object a line]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        dump) _arguments \
            '--all[show every child and whole values]:value:_files' \
            '--children[how many children of each node are shown]:value:_files' \
            '--depth[how many levels below the first node are shown]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        get) _arguments \
            '--raw[print a text as it is, and no line s end behind the value]:value:_files' \
            '--default[what to print where there is no such node]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        find) _arguments \
            '-k[the key, with * for one step of any kind and ** for any number of steps]:value:_files' \
            '--key[the key, with * for one step of any kind and ** for any number of steps]:value:_files' \
            '--kind[the kind, Integer to Integer64]:value:_files' \
            '--tag[the tag of a map, a number or a name]:value:_files' \
            '--temporality[the own temporality: default, persistent, transient, temporary]:value:_files' \
            '--value[the value, as get prints it, with or without quotes; an element of a set]:value:_files' \
            '-e[a regular expression that a text matches somewhere]:value:_files' \
            '--regex[a regular expression that a text matches somewhere]:value:_files' \
            '-i[a to z match A to Z in the regular expression]:value:_files' \
            '--ignore-case[a to z match A to Z in the regular expression]:value:_files' \
            '--paths[print keys alone]:value:_files' \
            '--count[print how many there are]:value:_files' \
            '-m[stop after so many; 0 finds all]:value:_files' \
            '--max-count[stop after so many; 0 finds all]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        diff) _arguments \
            '-q[print nothing, and stop at the first change]:value:_files' \
            '--quiet[print nothing, and stop at the first change]:value:_files' \
            '--stat[print how many changes there are, not which]:value:_files' \
            '--json[one JSON object a line]:value:_files' \
            '--abs[doubles are the same up to this distance]:value:_files' \
            '--rel[doubles are the same up to this part of the greater one]:value:_files' \
            '--ignore-temporality[own temporalities do not count]:value:_files' \
            '--ignore-tag[tags do not count]:value:_files' \
            '--limit[what is more transient does not count: persistent, transient or temporary]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        merge) _arguments \
            '-o[where the result goes; - is standard output]:value:_files' \
            '--output[where the result goes; - is standard output]:value:_files' \
            '--to[the form of the result: binary, text or json; without it, that of A]:value:_files' \
            '-f[overwrite the output, which may be one of the trees]:value:_files' \
            '--force[overwrite the output, which may be one of the trees]:value:_files' \
            '--ours[settle conflicts for A]:value:_files' \
            '--theirs[settle conflicts for B]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        merge3) _arguments \
            '-o[where the result goes; - is standard output]:value:_files' \
            '--output[where the result goes; - is standard output]:value:_files' \
            '--to[the form of the result: binary, text or json; without it, that of A]:value:_files' \
            '-f[overwrite the output, which may be one of the trees]:value:_files' \
            '--force[overwrite the output, which may be one of the trees]:value:_files' \
            '--ours[settle conflicts for A]:value:_files' \
            '--theirs[settle conflicts for B]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        check) _arguments \
            '--checksums[check the file alone, in little memory, whatever its size]:value:_files' \
            '--transient[check for a save with transient nodes]:value:_files' \
            '--strict[find fault with limits that are nearly reached, ill-formed texts and temporary nodes, too]:value:_files' \
            '--json[print a JSON object]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        convert) _arguments \
            '--to[the form: binary, text or json; without it, by the ending of TO]:value:_files' \
            '-f[overwrite TO]:value:_files' \
            '--force[overwrite TO]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        import) _arguments \
            '--to[the form: binary, text or json; without it, by the ending of TO]:value:_files' \
            '-f[overwrite TO and its dictionary]:value:_files' \
            '--force[overwrite TO and its dictionary]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        stats) _arguments \
            '--top[list so many sub-trees, and so many tags (10)]:value:_files' \
            '--svg[write a drawing instead, in which areas are bytes]:value:_files' \
            '-f[replace the drawing s file if there is one]:value:_files' \
            '--force[replace the drawing s file if there is one]:value:_files' \
            '--json[print a JSON object]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        view) _arguments \
            '-o[the file to write; without it, standard output]:value:_files' \
            '--output[the file to write; without it, standard output]:value:_files' \
            '-f[replace the output file if there is one]:value:_files' \
            '--force[replace the output file if there is one]:value:_files' \
            '--format[html (a page to open in a browser), dot (for Graphviz) or svg]:value:_files' \
            '--depth[dot and svg: draw so many levels below the root]:value:_files' \
            '--limit[dot and svg: draw so many nodes at most (1000)]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        annotate) _arguments \
            '--from[leave out what stands before this byte]:value:_files' \
            '--to[leave out what stands at this byte and behind it]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        salvage) _arguments \
            '-o[the file for the tree that could be read; without it, only the list]:value:_files' \
            '--output[the file for the tree that could be read; without it, only the list]:value:_files' \
            '-f[replace the output file if there is one]:value:_files' \
            '--force[replace the output file if there is one]:value:_files' \
            '--no-repair[do not try to put damaged blocks right, which takes seconds for each]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        help) _arguments \
            '--all[explain all of them]:value:_files' \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        version) _arguments \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
        completion) _arguments \
            '-h[print this help]:value:_files' \
            '--help[print this help]:value:_files' \
            '--color[colours: auto (on a terminal, unless NO_COLOR is set), always or never]:value:_files' \
            '--names[the dictionary of names; without this, FILE.names.json if there is one]:value:_files' \
            '--no-names[show numbers, even if there is a dictionary]:value:_files' \
            '--no-progress[show no progress bar]:value:_files' \
            '*:file:_files' ;;
    esac
}
_kivtree "$@"
