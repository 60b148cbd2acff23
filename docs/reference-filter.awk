# What Doxygen reads in place of a header: comments that stand above a declaration or behind it are marked as its
# documentation, every operation gets its index and every class its identifier from the class's operation list, and
# what is the same in all classes is left out.

function trimmed(text)
{
    gsub(/^[ \t]+|[ \t]+$/, "", text)
    return text
}
# The name that a declaration at this line declares a function of.
function functionName(at,    text)
{
    text = line[at]
    while (text !~ /[;{]/ && at < NR) {
        text = text " " trimmed(line[++at])
    }
    sub(/\(.*/, "", text)
    sub(/.*[^A-Za-z0-9_]/, "", text)
    return text
}
# Reads `Operations<XClient> : OperationList<XClient, 0x..., Operation<0, &XClient::name>, ...> {}`.
function readList(text,    row)
{
    gsub(/[ \t]/, "", text)
    if (!match(text, /structOperations<[A-Za-z0-9]+Client>:OperationList<[A-Za-z0-9]+,0x[0-9a-f]+/)) {
        return
    }
    text = substr(text, RSTART + 17)
    class = substr(text, 1, index(text, ">") - 1)
    identifier = substr(text, RLENGTH - 26, 10)
    text = substr(text, 1, index(text, "{"))
    while (match(text, /Operation<[0-9]+,&[A-Za-z0-9]+::[A-Za-z0-9_]+/)) {
        row = substr(text, RSTART + 10, RLENGTH - 10)
        text = substr(text, RSTART + RLENGTH)
        operationIndex[substr(row, index(row, "::") + 2)] = substr(row, 1, index(row, ",") - 1)
        ++count
    }
}
function closeGroup()
{
    if (inGroup) {
        print "    /// @}"
    }
    inGroup = 0
}
# Whether the line declares one of a run of constants, which share the comment above the first.
function isConstant(at) { return line[at] ~ /^    static (constexpr|std::string const) / }
{
    line[NR] = $0
    text = text $0
}

END {
    # The list of a class that may be called directly stands beside its skeleton.
    skeleton = FILENAME
    if (sub(/Client\.h$/, "Skeleton.h", skeleton)) {
        while ((getline beside < skeleton) > 0) {
            text = text beside
        }
    }
    readList(text)
    for (i = 1; i <= NR; ++i) {
        if (line[i] ~ /^template <>$/ &&
            line[i + 1] ~ /^(struct (Operations|RecordFields)<|inline constexpr bool isSentOnly<)/) {
            while (line[i] !~ /;/) {
                ++i
            }
            continue
        }
        if (line[i] ~ /^ *(using |static TreflectMetaObject\* staticMeta|static ClientSpecificMetaObject oMeta)/ ||
            line[i] ~ /^ +(explicit )?~?[A-Za-z0-9]+Client\(.*\) *(= default;|override;|: .*\{\})$/) {
            continue
        }

        comment = ""
        first = i
        while (line[i] ~ /^ *\/\/ ?/ && i <= NR) {
            comment = comment "\n" line[i++]
        }
        declared = line[i]
        if (comment == "" || trimmed(declared) == "" || declared ~ /^ *}/) {
            if (first < i) {
                print substr(comment, 2)
            }
            comment = ""
        }

        if (!isConstant(i) || comment != "") {
            closeGroup()
        }
        if (comment != "") {
            if (declared !~ /^#/ || comment ~ /^\n\/\/ [A-Za-z0-9]+: /) {
                gsub(/\n *\/\//, "&/", comment)
            }
            sub(/^\n/, "", comment)
            if (isConstant(i) && isConstant(i + 1)) {
                gsub(/\n *\/\/\//, "", comment)
                sub(/\/\/\//, "/// @name", comment)
                comment = comment "\n    /// @{"
                inGroup = 1
            } else if (declared ~ /^#pragma once/ && match(comment, /^\/\/\/ [A-Za-z0-9]+: /)) {
                # "XClient: the text": it comes first in the class's own description.
                subject = substr(comment, 5, RLENGTH - 6)
                comment = substr(comment, RLENGTH + 1)
                description = "/// " toupper(substr(comment, 1, 1)) substr(comment, 2) "\n///\n"
                comment = ""
            }
        }
        if (subject != "" && declared ~ "^(class|struct) " subject " ") {
            comment = description comment
        }
        if (declared ~ /^    virtual /) {
            name = functionName(i)
            if (name in operationIndex) {
                comment = comment == "" ? "    ///" : comment
                sub(/\/\/\//, "/// **" operationIndex[name] "** \\&ndash;", comment)
            }
        }
        if (comment != "") {
            print comment
        }
        if (class != "" && declared ~ "^class " class " ") {
            print "///\n/// @par Interface"
            printf "/// %s, class identifier `%s`, ", substr(class, 1, length(class) - 6), identifier
            print count == 0 ? "no operations of its own." : count == 1 ? "1 operation." : count " operations."
        }
        if (declared ~ /[;,] +\/\/ /) {
            sub(/\/\/ /, "///< ", declared)
        }
        print declared
    }
}
