# Derives the last two columns of mediasizes.txt from the first four, by the rules that a size names the first
# standard option that has it, and that a size without a name is the custom option's:
#   awk -f mediasizes.awk mediasizes.txt
/^#/ { print; next }
{ value[++count] = $1; name[count] = $2; size[count] = $3 " " $4; turned[count] = $4 " " $3 }
$1 >= 2 && !((size[count]) in first) { first[size[count]] = $1 }
END {
    for (i = 1; i <= count; ++i) {
        custom = value[i] < 2
        named = custom ? value[i] : first[size[i]]
        rotated = turned[i] in first ? first[turned[i]] : (custom ? value[i] : 0)
        print value[i], name[i], size[i], named, rotated
    }
}
