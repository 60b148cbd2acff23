# What a compiler does not keep of the operations that headers declare: a line {"class", "operation", "parameter names,
# separated by blanks", "comment"} for each. A limit in a comment of anything else is an error: nobody would hold to it.

function trimmed(text)
{
    gsub(/^[ \t]+|[ \t]+$/, "", text)
    return text
}
# The names of the parameters in "(long const& id, TipprmiSequence<A, 0>& list) const;".
function parameterNames(text,    names, depth, i, character, word)
{
    sub(/^[^(]*\(/, "", text)
    sub(/\)[^)]*$/, ",", text)
    names = ""
    word = ""
    depth = 0
    for (i = 1; i <= length(text); ++i) {
        character = substr(text, i, 1)
        depth += character == "<" ? 1 : character == ">" ? -1 : 0
        if (character == "," && depth == 0) {
            if (word != "") {
                names = names (names == "" ? "" : " ") word
            }
            word = ""
        } else {
            word = character ~ /[A-Za-z0-9_]/ ? word character : ""
        }
    }
    return names
}
function refuseStrayLimit(text, at)
{
    if (text ~ /[A-Za-z0-9_][.][.][A-Za-z0-9_]|contiguous netmask/) {
        printf "%s:%d: this limit is of no operation: %s\n", FILENAME, at, text > "/dev/stderr"
        exit 1
    }
}
FNR == 1 {
    class = ""
    comment = ""
}
/^class [A-Za-z0-9]+Client([ {]|$)/ && !/;/ {
    class = $2
}
/^    \/\/ / {
    comment = comment (comment == "" ? "" : " ") trimmed(substr($0, 8))
    next
}
/^ *\/\/ / {
    refuseStrayLimit($0, FNR)
}
/^    virtual / && class != "" && !/~/ {
    declaration = trimmed($0)
    while (declaration !~ /;/ && (getline following) > 0) {
        declaration = declaration " " trimmed(following)
    }
    name = declaration
    sub(/\(.*/, "", name)
    sub(/.*[^A-Za-z0-9_]/, "", name)
    gsub(/[\\"]/, "\\\\&", comment)
    printf "{\"%s\", \"%s\", \"%s\", \"%s\"},\n", class, name, parameterNames(declaration), comment
    comment = ""
}
{
    refuseStrayLimit(comment, FNR - 1)
    comment = ""
}
