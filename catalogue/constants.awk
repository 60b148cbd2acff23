# What a compiler does not keep of constants: with TABLE=constants a line CONSTANT(class, name) for each that a proxy class
# publishes, with TABLE=fields a line {"record", "field", "comment"} for each field whose comment names some,
# or has a limit.

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
TABLE == "fields" && record != "" && /; *\/\/ .*([A-Z]_+ (bits|constant)|[.][.]|contiguous netmask|as [A-Za-z:]+\(\))/ {
    name = $0
    comment = $0
    sub(/; *\/\/ .*/, "", name)
    sub(/ *[={].*/, "", name)
    sub(/.* /, "", name)
    sub(/.*; *\/\/ /, "", comment)
    gsub(/[\\"]/, "\\\\&", comment)
    printf "{\"%s\", \"%s\", \"%s\"},\n", record, name, comment
}
