# What a compiler does not keep of constants: with TABLE=constants a line CONSTANT(class, name) for each that a proxy class
# publishes, with TABLE=fields a line {"record", "field", "comment"} for each field with a comment behind it.
# A limit behind anything else is an error.

FNR == 1 {
    class = ""
    record = ""
}
/^class [A-Za-z0-9]+Client([ {]|$)/ && !/;/ {
    class = $2
}
/^};/ {
    class = ""
    record = ""
}
/^ *struct [A-Za-z0-9_]+ \{/ {
    record = (class == "" ? "" : class "::") $2
}
/^    \};/ {
    record = ""
}
TABLE == "constants" && class != "" && /^    static (constexpr [a-z ]+ [A-Za-z0-9_]+ = |std::string const [A-Za-z0-9_]+;)/ {
    name = $0
    sub(/ = .*|;.*/, "", name)
    sub(/.* /, "", name)
    printf "CONSTANT(%s, %s)\n", class, name
}
TABLE == "fields" && record != "" && /; *\/\/ / {
    name = $0
    comment = $0
    sub(/; *\/\/ .*/, "", name)
    sub(/ *[={].*/, "", name)
    sub(/.* /, "", name)
    sub(/.*; *\/\/ /, "", comment)
    gsub(/[\\"]/, "\\\\&", comment)
    printf "{\"%s\", \"%s\", \"%s\"},\n", record, name, comment
}
TABLE == "fields" && record == "" && /[^ ].*; *\/\/ .*([A-Za-z0-9_][.][.][A-Za-z0-9_]|contiguous netmask)/ {
    printf "%s:%d: this limit is of no field: %s\n", FILENAME, FNR, $0 > "/dev/stderr"
    exit 1
}
