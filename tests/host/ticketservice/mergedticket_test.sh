#!/bin/sh
# Looks at a merged ticket with libxml2's own tools: mergedticket_test.sh TICKET
#
# The ticket is what merge_test.cpp expects of base.xml with otherprefixes.xml merged in, in which one prefix
# stood for two vendors.
ticket=$1
failures=0

expect() {
    actual=$(xmllint --xpath "$2" "$ticket" 2>&1)
    if [ "$actual" != "$1" ]; then
        echo "expected $1, got $actual: $2" >&2
        failures=$((failures + 1))
    fi
}

# The count of features whose name is LOCAL in the namespace URI, by the declarations in scope.
features() {
    echo "count(/*/*[local-name()='Feature'][substring-after(@name, ':')='$2']" \
        "[namespace::*[name()=substring-before(../@name, ':')]='$1'])"
}

keywords=http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords
expect 1 "$(features $keywords PageOrientation)"
expect 1 "$(features $keywords PageMediaSize)"
expect 1 "$(features urn:vendor:one JobCompress)"
expect 1 "$(features urn:vendor:two JobCompress)"
expect 1 "$(features urn:vendor:three PageFold)"
# No name and no type has a prefix that is not declared.
expect 0 "count(//*[contains(@name, ':')][not(namespace::*[name()=substring-before(../@name, ':')])])"
expect 0 "count(//@*[local-name()='type'][not(../namespace::xsd)])"
expect " R&D <draft> " "string(//*[@name='ns0000:StampText']/*)"
[ "$failures" -eq 0 ]
