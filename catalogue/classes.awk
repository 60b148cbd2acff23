# Lists the headers with operation lists, and the classes of these lists by name: `#include`s and CLASS(name) lines.
# Read with HEADERS or CLASSES defined, one at a time. `root` is the directory that includes begin at.

FNR == 1 {
    header = substr(FILENAME, length(root) + 2)
}
/^struct Operations<[A-Za-z0-9]+Client>/ {
    name = $0
    sub(/^struct Operations</, "", name)
    sub(/>.*/, "", name)
    if (!(header in seen)) {
        seen[header] = 1
        headers = headers "#include \"" header "\"\n"
    }
    names[++count] = name
}
END {
    for (i = 2; i <= count; ++i) {
        for (j = i; j > 1 && names[j] < names[j - 1]; --j) {
            swapped = names[j]
            names[j] = names[j - 1]
            names[j - 1] = swapped
        }
    }
    printf "#ifdef HEADERS\n%s#endif\n#ifdef CLASSES\n", headers
    for (i = 1; i <= count; ++i) {
        printf "CLASS(%s)\n", names[i]
    }
    print "#endif"
}
