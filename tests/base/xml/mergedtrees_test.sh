#!/bin/sh
# Looks at merged trees with libxml2's own tools: mergedtrees_test.sh FOLDER
failures=0

# expect COUNT FILE XPATH
expect() {
    actual=$(xmllint --xpath "count($3)" "$2" 2>&1)
    if [ "$actual" != "$1" ]; then
        echo "$2: expected $1, got $actual: $3" >&2
        failures=$((failures + 1))
    fi
}

# The features whose name is $2 in the namespace $1, by the declarations in scope.
features() {
    echo "/*/*[local-name()='Feature'][substring-after(@name, ':')='$2']" \
        "[namespace::*[name()=substring-before(../@name, ':')]='$1']"
}

keywords=http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords
driver=http://schemas.quellmark.example/printing/2005/08/printticket
for tree in "$1/public.merged.xml" "$1/othervendor.merged.xml"; do
    expect 1 "$tree" "$(features $keywords PageScaling)"
    expect 1 "$tree" "$(features $keywords PageOrientation)"
    expect 1 "$tree" "$(features $driver JobCompress)"
    # No name and no type has a prefix that is not declared.
    expect 0 "$tree" "//*[contains(@name, ':')][not(namespace::*[name()=substring-before(../@name, ':')])]"
    expect 1 "$tree" "//@*[name()='xsi:type'][../namespace::xsd='http://www.w3.org/2001/XMLSchema']"
done
expect 1 "$1/othervendor.merged.xml" "$(features urn:other:vendor PageFold)"
[ "$failures" -eq 0 ]
