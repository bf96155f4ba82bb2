# Reads docs/names.txt, then headers; prints docs/names.md. A header declares a name when it defines a
# type of that name, or else when the name follows a type and is followed by what ends or begins a
# declaration; an override declares it for its owner only. A name that several headers declare needs its
# owner.

function fail(text) {
    print text > "/dev/stderr"
    failed = 1
    exit 1
}

# Of the table of controls, what stands with whoever holds the value and with the parameter becomes a
# member; the rows own these.
function tableRankOf(word, before) {
    if (before ~ /CONTROL\($/) owns[word, FILENAME] = 1
    return before ~ /(KNOB|TOGGLE|BUTTON|PARAMETER)\([^)]*$/ ? 2 : 0
}

# Notes that a file has the word: defined as a type (1), declared (2), declared again (3). 0 is no more
# than a use.
function note(word, file, rank) {
    if (rank == 1) owns[word, file] = 1
    if (rank == 0) return
    if (!((word, file) in ranks)) files[word] = files[word] " " file
    if (!((word, file) in ranks) || rank < ranks[word, file]) ranks[word, file] = rank
}

function rankOf(before, after, statement) {
    if (before ~ /(class|struct|enum|namespace|using) +([A-Za-z_]+::)*$/) return after ~ /^ *(;|::)/ ? 0 : 1
    if (before ~ /(return|case|delete|new)[ *&]+$/ || after ~ /^ *::/) return 0
    if (before !~ /[A-Za-z0-9_>*&,] *[*&]*$/ || after !~ /^ *[;,=({:[]/) return 0
    return statement ~ / override/ ? 3 : 2
}

# The one header for entry, which is a name or OWNER::name.
function fileOf(entry, owner, name, all, count, i, best, rank, found) {
    name = entry
    if (entry ~ /::/) {
        owner = substr(entry, 1, index(entry, "::") - 1)
        name = substr(entry, index(entry, "::") + 2)
    }
    count = split(files[name], all, " ")
    best = owner == "" ? 2 : 3
    for (i = 1; i <= count; ++i) {
        rank = ranks[name, all[i]]
        if (rank > best || (owner != "" && !owns[owner, all[i]])) continue
        found = rank < best || found == "" ? all[i] : found " " all[i]
        best = rank
    }
    if (found == "") fail("docs/names.txt: no header declares " entry)
    if (found ~ / /) fail("docs/names.txt: " entry " is declared in " found "; write OWNER::" name)
    return found
}

FNR == NR {
    if (/^#/ || /^$/) next
    if (split($0, parts, / *\| */) == 3) {
        replaced[++replacements] = $0
        entry = parts[3]
    } else {
        entry = listed[++names] = $0
    }
    wanted[entry] = 1
    if (entry ~ /::/) {
        wanted[substr(entry, 1, index(entry, "::") - 1)] = 1
        wanted[substr(entry, index(entry, "::") + 2)] = 1
    }
    next
}

/^ *#/ { next }

# Looks at one statement, from behind the last one to its ; { or }.
function readStatement(statement, before, rest, word) {
    rest = statement
    while (match(rest, /[A-Za-z_][A-Za-z0-9_]*/)) {
        word = substr(rest, RSTART, RLENGTH)
        before = before substr(rest, 1, RSTART - 1)
        rest = substr(rest, RSTART + RLENGTH)
        if (word in wanted) note(word, FILENAME, isTable ? tableRankOf(word, before) : rankOf(before, rest, statement))
        before = before word
    }
}

FNR == 1 {
    statement = ""
    isTable = FILENAME ~ /\.inl$/
}

{
    sub(/\/\/.*/, "")
    gsub(/"[^"]*"/, "\"\"")
    statement = statement " " $0
    while (match(statement, /[;{}]/)) {
        rest = substr(statement, RSTART + 1)
        readStatement(substr(statement, 1, RSTART))
        statement = rest
    }
    if (isTable) {
        readStatement(statement)
        statement = ""
    }
}

END {
    if (failed) exit 1
    print "# Where each given name lives\n"
    print "Printed by `scripts/names` from `docs/names.txt`, which lists the names. A message name became a"
    print "member function: each inner colon an underscore (`writeFloats:fromArray:` is"
    print "`writeFloats_fromArray`). Fields that RENDER alone uses are private; tests reach them through"
    print "`tests/support/stream_probe.h`.\n"
    print "| Name | File |\n|---|---|"
    for (i = 1; i <= names; ++i) {
        file = fileOf(listed[i])
        sub(/.*::/, "", listed[i])
        print "| `" listed[i] "` | `" file "` |"
    }
    print "\nWhat a platform used to give under these names is here:\n"
    print "| Name | In its place | File |\n|---|---|---|"
    for (i = 1; i <= replacements; ++i) {
        split(replaced[i], parts, / *\| */)
        print "| " parts[1] " | " parts[2] " | `" fileOf(parts[3]) "` |"
    }
}
