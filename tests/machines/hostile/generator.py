"""Makes hostile XPS packages. Each is decided by the seed and its index alone, whatever was made before it."""

import io
import random
import re
import struct
import warnings
import zipfile

SEED = 20260101
# A word that stands in files which no document may reach, and so must not turn up in an output.
SENTINEL = b"SENTINEL-4c1e9a7b"
# Where such a file lies, as a document may name it, and an address at which nobody may call.
SECRET = "C:/hostile-secret.txt"
CALLED_PORT = 47613

BASES = ["plain", "sample", "mixed", "tickets", "openxps", "odd-names", "alternate-content"]
OPTIONS = [[], ["--orientation", "Landscape"], ["--orientation", "Landscape"], ["--media", "ISOA3"],
           ["--media", "ISOA3", "--orientation", "Landscape"], ["--tessel-type", "1"]]
SCHEMA = "http://schemas.microsoft.com/windows/2003/08/printing/printschema"
TICKET = (f'<psf:PrintTicket xmlns:psf="{SCHEMA}framework" xmlns:psk="{SCHEMA}keywords" '
          'xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema" '
          'version="1">%s</psf:PrintTicket>')
NUMBERS = ["1e400", "-1e400", "NaN", "INF", "-0", "0", "-1", "2147483647", "2147483648", "-2147483648", "-2147483649",
           "4294967296", "99999999999999999999", "1e-400", "0x10", "1.5", "", " ", "+-1", "1e", ".", "9" * 5000, "1,2",
           "\u0661", "1e38", "3.5e38"]
TARGETS = ["#a", "?b", "Pages/1.fpage#a", "Pages/1.fpage?q", "http://127.0.0.1:47613/1.fpage", "file:///C:/1.fpage",
           "//server/share/1.fpage", "mailto:a", "", "/", ".", "..", "a" * 100000, "Pages/%00.fpage", "Pages/1%2Efpage",
           "%", "Pages//1.fpage", "\u00e9", "Pages/1.fpage ", "CON", "NUL.fpage", "C:\\1.fpage"]
ENCODINGS = ["ISO-8859-1", "UTF-7", "IBM037", "x" * 9000, "utf-8\0", ""]
CLIMBING = ["../evil.txt", "../../../../evil.txt", "..\\evil.txt", "%2e%2e/evil.txt", "a/%2E%2e/%2e./evil.txt",
            "/../evil.txt", "\\..\\evil.txt", "C:/evil.txt", "C:\\evil.txt", "//server/evil.txt", "CON", "NUL", "aux.fpage",
            "Documents/COM1", "a/..%5cevil.txt", "..%2fevil.txt", "a/../../evil.txt", "evil.txt:stream", "...", "a/. ./b",
            "/" * 3000 + "x", "a" * 60000, "\u2025/evil.txt", "evil\x01.txt", " ..", ".. /evil.txt"]


class Document:
    """The items of one package, to be changed, and the ways to write them that are not right."""

    def __init__(self, items):
        self.items = list(items)
        # Changes of the archive's bytes.
        self.after = []
        self.stored = False

    def names(self, pattern):
        return [name for name, _ in self.items if re.search(pattern, name, re.I)]

    def get(self, name):
        return next(content for item, content in self.items if item == name)

    def put(self, name, content):
        if isinstance(content, str):
            content = content.encode("utf-8", "surrogatepass")
        for at, (item, _) in enumerate(self.items):
            if item == name:
                self.items[at] = (name, content)
                return
        self.items.append((name, content))

    def add(self, name, content):
        self.items.append((name, content))

    def remove(self, name):
        self.items = [entry for entry in self.items if entry[0] != name]

    def write(self):
        target = io.BytesIO()
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            with zipfile.ZipFile(target, "w") as archive:
                for name, content in self.items:
                    info = zipfile.ZipInfo("x", (2021, 3, 4, 5, 6, 8))
                    # The constructor would cut a name at its first zero byte.
                    info.filename = name
                    method = zipfile.ZIP_STORED if self.stored else zipfile.ZIP_DEFLATED
                    archive.writestr(info, content, method, compresslevel=6)
        data = bytearray(target.getvalue())
        for change in self.after:
            data = bytearray(change(data))
        return bytes(data)


MARKUP = r"\.(fpage|fdoc|fdseq|rels)$|\[Content_Types\]\.xml$|\.xml$"
PAGE, TICKET_NAME = r"\.fpage$", r"(?<!\])\.xml$"


def pick(rng, document, pattern=MARKUP):
    """A part, most often a page or a ticket; and any where there is none of this kind."""
    if pattern is MARKUP:
        pattern = rng.choice([MARKUP, PAGE, PAGE, TICKET_NAME])
    return rng.choice(document.names(pattern) or document.names(MARKUP))


def pick_ticket(rng, document):
    """The name of a ticket, of the first page where there was none."""
    tickets = document.names(r"(_PT|job|page|document|shared|/\d)\.xml$")
    if tickets:
        return rng.choice(tickets)
    page = rng.choice(document.names(PAGE))
    name = "Metadata/hostile.xml"
    document.put(name, TICKET % "")
    add_relationship(document, page, "http://schemas.microsoft.com/xps/2005/06/printticket", "/" + name)
    types = document.names(r"content_types")[0]
    document.put(types, document.get(types).replace(
        b"</Types>", f'<Override PartName="/{name}" ContentType="application/vnd.ms-printing.printticket+xml"/></Types>'.encode()))
    return name


def relationships_of(document, part):
    folder, _, file = part.rpartition("/")
    return f"{folder}/_rels/{file}.rels".lstrip("/")


def add_relationship(document, part, kind, target, more=""):
    name = relationships_of(document, part)
    entry = f'<Relationship Id="H{len(document.items)}" Type="{kind}" Target="{target}"{more}/>'
    names = [item for item, _ in document.items]
    text = document.get(name).decode("utf-8", "replace") if name in names else (
        '<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"></Relationships>')
    document.put(name, text.replace("</Relationships>", entry + "</Relationships>"))


def in_root(content, attribute):
    """Markup with text put into its root's start tag."""
    return re.sub(rb"(<(?![?!])[^\s/>]+)", lambda tag: tag[1] + b" " + attribute.encode(), content, count=1)


def below_root(content, inner):
    """Markup with text put right below its root."""
    return re.sub(rb"(<(?![?!])[^>]*?)(/?)>", lambda tag: tag[1] + b">" + inner.encode() + (b"</x>" if tag[2] else b""),
                  content, count=1)


def with_type(content, declaration):
    """Markup with a document type in front of its root."""
    return re.sub(rb"<(?![?!])", lambda _: declaration.encode() + b"<", content, count=1)


# Each kind of mutation: what it does to a document. The name is what the report says.
def truncate_package(rng, document):
    document.after.append(lambda data: data[: rng.randrange(len(data))])


def flip_package_bits(rng, document):
    def flip(data):
        for _ in range(rng.choice([1, 1, 3, 20, 200])):
            data[rng.randrange(len(data))] ^= 1 << rng.randrange(8)
        return data
    document.after.append(flip)


def truncate_part(rng, document):
    name = pick(rng, document)
    content = document.get(name)
    document.put(name, content[: rng.randrange(len(content) + 1)])


def flip_part_bits(rng, document):
    name = pick(rng, document)
    content = bytearray(document.get(name))
    for _ in range(rng.choice([1, 1, 2, 8, 64]) if content else 0):
        content[rng.randrange(len(content))] ^= 1 << rng.randrange(8)
    document.put(name, bytes(content))


def shuffle_markup(rng, document):
    name = pick(rng, document)
    tokens = re.findall(rb"<[^>]*>|[^<]+|<", document.get(name))
    for _ in range(rng.choice([1, 2, 5])):
        at, other = rng.randrange(len(tokens)), rng.randrange(len(tokens))
        action = rng.choice(["drop", "double", "swap"])
        if action == "drop" and len(tokens) > 1:
            del tokens[at]
        elif action == "double":
            tokens.insert(at, tokens[at])
        else:
            tokens[at], tokens[other % len(tokens)] = tokens[other % len(tokens)], tokens[at]
    document.put(name, b"".join(tokens))


def huge_attribute(rng, document):
    name = pick(rng, document)
    filler = rng.choice(["x", "&amp;", "\u20ac", "&#65;", " "]) * (rng.choice([100, 1000, 4000]) << 10)
    key = rng.choice(["Huge", "Name", "Width", "BleedBox", "ContentBox", "version", "xmlns:h", "xml:lang"])
    document.put(name, in_root(document.get(name), f'{key}="{filler}"'))


def many_attributes(rng, document):
    name = pick(rng, document)
    count = rng.choice([100, 3000, 20000, 100000])
    prefix = rng.choice(["a%d", "xmlns:a%d", "a"])
    attributes = " ".join((prefix % number if "%" in prefix else prefix) + '="u"' for number in range(count))
    document.put(name, in_root(document.get(name), attributes))


def deep_nesting(rng, document):
    name = pick(rng, document)
    depth = rng.choice([200, 300, 3000, 100000])
    element = rng.choice(["Canvas", "a", "a xmlns='u'", "psf:Feature name='psk:a'"])
    close = "</" + element.split()[0] + ">"
    document.put(name, below_root(document.get(name), f"<{element}>" * depth + close * depth))


def entity_bomb(rng, document):
    levels = rng.choice([2, 5, 10, 40])
    names = [f'<!ENTITY l0 "{"lol" * rng.choice([1, 20000])}">']
    for level in range(1, levels):
        names.append(f'<!ENTITY l{level} "{f"&l{level - 1};" * rng.choice([2, 10])}">')
    if rng.random() < 0.2:
        names.append(f'<!ENTITY l{levels - 1} "&l{levels - 1};">')
    name = pick(rng, document)
    content = with_type(document.get(name), f'<!DOCTYPE x [{"".join(names)}]>')
    use = f"&l{levels - 1};"
    content = in_root(content, f'Bomb="{use}"') if rng.random() < 0.5 else below_root(content, use)
    document.put(name, content)


def external_entity(rng, document):
    place = rng.choice(["file:///" + SECRET, SECRET, SECRET.replace("/", "\\"), "hostile-secret.txt", "file:///etc/passwd",
                        f"http://127.0.0.1:{CALLED_PORT}/secret", "\\\\127.0.0.1\\share\\secret", "in.xps"])
    shape = rng.choice(['<!DOCTYPE x [<!ENTITY e SYSTEM "{0}">]>', '<!DOCTYPE x SYSTEM "{0}">',
                        '<!DOCTYPE x PUBLIC "p" "{0}" [<!ENTITY e PUBLIC "q" "{0}">]>',
                        '<!-- a --><?p <!DOCTYPE?>\n<!DOCTYPE x [<!ENTITY e SYSTEM "{0}">]>'])
    name = pick(rng, document)
    content = with_type(document.get(name), shape.format(place))
    content = rng.choice([below_root(content, "&e;"), in_root(content, 'Name="&e;"'), content])
    if rng.random() < 0.2:
        content = b"\xff\xfe" + content.decode("utf-8", "replace").encode("utf-16-le")
    document.put(name, content)


def parameter_entity(rng, document):
    place = rng.choice(["file:///" + SECRET, f"http://127.0.0.1:{CALLED_PORT}/a.dtd", SECRET])
    shape = rng.choice(['<!DOCTYPE x [<!ENTITY % p SYSTEM "{0}"> %p;]>', "<!DOCTYPE x [<!ENTITY % a '<!ENTITY e \"{0}\">'> %a;]>",
                        '<!DOCTYPE x [<!ENTITY % p "%q;"><!ENTITY % q "%p;"> %p;]>',
                        "<!DOCTYPE x [<!ATTLIST FixedPage Width CDATA '9' Height CDATA '9'>]>"])
    name = pick(rng, document)
    document.put(name, with_type(document.get(name), shape.format(place)))


def wrong_encoding(rng, document):
    name = pick(rng, document)
    text = document.get(name).decode("utf-8", "replace")
    plain = re.sub(r"^<\?xml.*?\?>", "", text)
    form = rng.randrange(14)
    content = [
        lambda: text.encode("utf-16-le") + b"x",
        lambda: b"\xff\xfe" + text.encode("utf-16-le")[:-1],
        lambda: b"\xfe\xff" + text.encode("utf-16-le"),
        lambda: b"\xff\xfe" + text.encode("utf-8"),
        lambda: b"\xef\xbb\xbf" + text.encode("utf-16-le"),
        lambda: b"\xef\xbb\xbf" * 2 + text.encode("utf-8"),
        lambda: text.encode("utf-8").replace(b"<", b"\xc0\xbc", 2),
        lambda: text.encode("utf-8").replace(b'"', b'"\xed\xa0\x80', 1),
        lambda: text.encode("utf-32-le"),
        lambda: text.encode("utf-7"),
        lambda: b"<?xml version='1.0' encoding='UTF-16'?>" + plain.encode(),
        lambda: b"\xff\xfe" + ("<?xml version='1.0' encoding='UTF-8'?>" + plain).encode("utf-16-le"),
        lambda: f"<?xml version='1.0' encoding='{rng.choice(ENCODINGS)}'?>{plain}".encode(),
        lambda: b"\xff\xfe" + text.encode("utf-16-le").replace(b"a\0", b"\x00\xdc", 1),
    ][form]()
    document.put(name, content)


def records(data, signature):
    at, found = 0, []
    while (at := data.find(signature, at)) >= 0:
        found.append(at)
        at += 4
    return found


def lying_lengths(rng, document):
    values = [0, 1, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFF, 0xFFFFFFFE, 0x10000]

    def lie(data):
        for _ in range(rng.choice([1, 2, 4])):
            signature, fields = rng.choice([
                (b"PK\3\4", [(6, "H"), (8, "H"), (14, "I"), (18, "I"), (22, "I"), (26, "H"), (28, "H")]),
                (b"PK\1\2", [(8, "H"), (10, "H"), (16, "I"), (20, "I"), (24, "I"), (28, "H"), (30, "H"), (32, "H"), (42, "I")]),
                (b"PK\5\6", [(4, "H"), (8, "H"), (10, "H"), (12, "I"), (16, "I"), (20, "H")])])
            places = records(data, signature)
            offset, form = rng.choice(fields)
            if places:
                at = rng.choice(places) + offset
                old = struct.unpack_from("<" + form, data, at)[0]
                new = rng.choice(values + [old + 1, max(old - 1, 0), old * 2])
                struct.pack_into("<" + form, data, at, new & (0xFFFF if form == "H" else 0xFFFFFFFF))
        return data
    document.after.append(lie)


def zip_bomb(rng, document):
    name = pick(rng, document)
    megabytes = rng.choice([8, 64, 200, 600])
    blank = b" " * (megabytes << 20)
    form = rng.choice(["before", "inside", "comment", "pieces", "nested"])
    content = document.get(name)
    if form == "before":
        document.put(name, blank + content)
    elif form == "inside":
        document.put(name, below_root(content, "\0").replace(b"\0", blank))
    elif form == "comment":
        document.put(name, with_type(content, "\0").replace(b"\0", b"<!--" + blank + b"-->"))
    elif form == "pieces":
        document.remove(name)
        for number in range(4):
            document.add(f"{name}/[{number}]" + (".last.piece" if number == 3 else ".piece"), blank[: len(blank) // 4])
    else:
        inner = Document([("bomb.zip", blank)]).write()
        document.add("Documents/1/nested.zip", inner)
        document.put(name, inner)


def duplicate_names(rng, document):
    name = rng.choice(document.items)[0]
    again = rng.choice([name, name.upper(), "/" + name, name.replace("/", "\\"), name.replace("e", "%65", 1),
                        name + "/[0].last.piece", name + "/[0].piece", name + "/x"])
    document.items.insert(rng.randrange(len(document.items) + 1), (again, rng.choice([document.get(name), b"", b"<x/>"])))


def cycle(rng, document):
    sequence, documents, pages = (rng.choice(document.names(kind)) for kind in (r"\.fdseq$", r"\.fdoc$", PAGE))
    source, target = rng.choice([(sequence, sequence), (documents, sequence), (documents, documents), (sequence, pages),
                                 (documents, pages)])
    times = rng.choice([1, 2, 1000])
    tag = "DocumentReference" if source == sequence else "PageContent"
    entry = f'<{tag} Source="/{target}"/>' * times
    content = document.get(source)
    reference = f'Source="/{target}"'.encode()
    document.put(source, below_root(content, entry) if rng.random() < 0.5 else
                 re.sub(rb'Source="[^"]*"', lambda _: reference, content))


def climbing_names(rng, document):
    evil = rng.choice(CLIMBING)
    if rng.random() < 0.5:
        document.add(evil, b"evil " + SENTINEL[:8])
        return
    name = pick(rng, document, r"\.(fdoc|fdseq|rels)$|content_types")
    content = document.get(name)
    value = evil.replace("\\", r"\\").encode("utf-8")
    document.put(name, re.sub(rb'(Source|Target|PartName)="[^"]*"', rb'\1="' + value.replace(b"\x01", b"") + b'"', content, count=1))


def odd_relationships(rng, document):
    names = document.names(r"\.rels$")
    name = rng.choice(names)
    form = rng.choice(["remove", "double", "mode", "type", "many", "empty", "id"])
    content = document.get(name)
    entries = re.findall(rb"<Relationship\s[^>]*>", content)
    if form == "remove" or not entries:
        document.remove(name)
    elif form == "double":
        document.put(name, content.replace(entries[0], entries[0] * rng.choice([2, 500])))
    elif form == "mode":
        document.put(name, content.replace(b"Type=", rng.choice([b'TargetMode="External" Type=', b'TargetMode="x" Type=']), 1))
    elif form == "type":
        document.put(name, re.sub(rb'Type="[^"]*"', rb'Type=""', content, count=rng.randrange(3)))
    elif form == "many":
        more = b"".join(b'<Relationship Id="M%d" Type="t" Target="/x%d"/>' % (n, n) for n in range(rng.choice([1000, 50000])))
        document.put(name, content.replace(b"</Relationships>", more + b"</Relationships>"))
    elif form == "empty":
        document.put(name, b"")
    else:
        document.put(name, re.sub(rb'Id="[^"]*"', b'Id="R1"', content))


def odd_targets(rng, document):
    name = pick(rng, document, r"\.(rels|fdoc|fdseq)$")
    target = rng.choice(TARGETS).encode("utf-8").replace(b"\\", rb"\\")
    document.put(name, re.sub(rb'(Source|Target)="[^"]*"', rb'\1="' + target + b'"', document.get(name), count=rng.choice([1, 2])))


def odd_content_types(rng, document):
    name = document.names("content_types")[0]
    content = document.get(name)
    form = rng.choice(["remove", "default", "override", "many", "value", "namespace"])
    if form == "remove":
        document.remove(name)
    elif form == "default":
        document.put(name, re.sub(rb"<Default[^>]*>", b"", content, count=rng.choice([1, 9])))
    elif form == "override":
        document.put(name, re.sub(rb"(<Override[^>]*>)", rb"\1\1", content))
    elif form == "many":
        more = b"".join(b'<Override PartName="/m%d" ContentType="a/b"/>' % n for n in range(rng.choice([1000, 50000])))
        document.put(name, content.replace(b"</Types>", more + b"</Types>"))
    elif form == "value":
        document.put(name, re.sub(rb'ContentType="[^"]*"', b'ContentType="' + b"&lt;&#10;" * 99 + b'"', content))
    else:
        document.put(name, content.replace(b"content-types", b"other-types"))


def bad_ticket(rng, document):
    deep = rng.choice([10, 250, 2000])
    cyclic = "".join(f'<psf:ScoredProperty name="psk:p{n}"><psf:ParameterRef name="psk:p{(n + 1) % 3}"/></psf:ScoredProperty>'
                     f'<psf:ParameterInit name="psk:p{n}"><psf:ParameterRef name="psk:p{(n + 1) % 3}"/></psf:ParameterInit>'
                     for n in range(3))
    media = ('<psf:Feature name="psk:PageMediaSize"><psf:Option name="psk:CustomMediaSize"><psf:ScoredProperty '
             'name="psk:MediaSizeWidth"><psf:ParameterRef name="psk:PageMediaSizeMediaSizeWidth"/></psf:ScoredProperty>'
             '</psf:Option></psf:Feature><psf:ParameterInit name="psk:PageMediaSizeMediaSizeWidth">'
             '<psf:ParameterRef name="psk:PageMediaSizeMediaSizeWidth"/></psf:ParameterInit>')
    feature = '<psf:Feature name="psk:PageOrientation">%s</psf:Feature>'
    document.put(pick_ticket(rng, document), rng.choice([
        "", "no markup", "\0" * 100, "%PDF-1.4", "{}", "<html/>", "<PrintTicket/>", TICKET % cyclic, TICKET % media,
        TICKET.replace("version", "other") % "", TICKET.replace(SCHEMA, "urn:x") % "", TICKET.replace("psf", "a") % "",
        TICKET.replace("xmlns:psf", "xmlns").replace("psf:", "") % "", TICKET % (feature % ""),
        TICKET % (feature % '<psf:Option name="psk:Landscape"/>' * 2000), TICKET % ((feature % "") * 2000),
        TICKET % (feature % ('<psf:Option name="psk:Landscape"/>' * 500)), TICKET % (feature % '<psf:Option name="Landscape"/>'),
        TICKET % (feature % '<psf:Option name="no:Landscape"/>'), TICKET % (feature % '<psf:Option name=":"/>'),
        TICKET % (feature % "<psf:Option/>"), TICKET % '<psf:Feature name="psk:\'] | //*[\'"/>', TICKET % '<psf:Feature name=\'psk:"\'/>',
        TICKET % ('<psf:Feature name="psk:PageOrientation">' * deep + "</psf:Feature>" * deep),
        TICKET % ('<psf:Feature name="psk:%s"/>' % ("x" * 100000)), TICKET % "<![CDATA[<!DOCTYPE]]>" + "<!-- x -->" * 1000]))


def odd_page_numbers(rng, document):
    name = rng.choice(document.names(PAGE))
    content = document.get(name)
    for _ in range(rng.choice([1, 2, 4])):
        value = rng.choice(NUMBERS)
        key = rng.choice(["Width", "Height", "BleedBox", "ContentBox"])
        if key.endswith("Box"):
            value = ",".join(rng.choice(NUMBERS) for _ in range(rng.choice([0, 3, 4, 4, 4, 5])))
        without = re.sub(rb"(<FixedPage[^>]*?)\s" + key.encode() + rb'="[^"]*"', rb"\1", content, count=1)
        content = in_root(without, f'{key}="{value}"') if rng.random() < 0.9 else without
    document.put(name, content)


def odd_ticket_numbers(rng, document):
    def value(name):
        return (f'<psf:ScoredProperty name="psk:{name}"><psf:Value xsi:type="xsd:{rng.choice(["integer", "string", "x"])}">'
                f"{rng.choice(NUMBERS)}</psf:Value></psf:ScoredProperty>")
    sheet = "".join(value(name) for name in ("MediaSizeWidth", "MediaSizeHeight") if rng.random() < 0.9)
    option = rng.choice(["CustomMediaSize", "ISOA4", "ISOA3", "PSCustomMediaSize", "Unheard"])
    parts = [f'<psf:Feature name="psk:PageMediaSize"><psf:Option name="psk:{option}">{sheet}</psf:Option></psf:Feature>']
    if rng.random() < 0.6:
        names = ("OffsetWidth", "OffsetHeight", "ScaleWidth", "ScaleHeight", "Scale")
        scale = "".join(f'<psf:ScoredProperty name="psk:{name}"><psf:ParameterRef name="psk:PageScaling{name}"/></psf:ScoredProperty>'
                        for name in names)
        parts.append(f'<psf:Feature name="psk:PageScaling"><psf:Option name="psk:{rng.choice(["Custom", "CustomSquare"])}">{scale}'
                     "</psf:Option></psf:Feature>")
        parts += [f'<psf:ParameterInit name="psk:PageScaling{name}"><psf:Value xsi:type="xsd:integer">{rng.choice(NUMBERS)}'
                  "</psf:Value></psf:ParameterInit>" for name in names if rng.random() < 0.9]
    if rng.random() < 0.5:
        parts.append('<psf:Feature name="psk:PageOrientation"><psf:Option name="psk:Landscape"/></psf:Feature>')
    document.put(pick_ticket(rng, document), TICKET % "".join(parts))


def large_ticket(rng, document):
    count = rng.choice([1000, 8000])
    feature = '<psf:Feature name="psk:{}"><psf:Option name="psk:{}">{}</psf:Option></psf:Feature>'
    landscape = feature.format("PageOrientation", "Landscape", "")
    reference = '<psf:ScoredProperty name="psk:S"><psf:ParameterRef name="psk:P{}"/></psf:ScoredProperty>'
    parameter = '<psf:ParameterInit name="psk:P{}"><psf:Value>1</psf:Value></psf:ParameterInit>'
    many = rng.choice([lambda n: feature.format(f"F{n}", "O", reference.format(n)) + parameter.format(n),
                       lambda n: parameter.format(n), lambda n: reference.format(n), lambda n: landscape,
                       lambda n: feature.format(f"F{n}", "O", ""), lambda n: feature.format("PageScaling", f"O{n}", ""),
                       lambda n: f'<psf:Feature xmlns:p{n}="urn:{n}" name="p{n}:F{n}"/>'])
    document.put(pick_ticket(rng, document), TICKET % (landscape + "".join(many(n) for n in range(count))))


# The dear ones come more rarely.
KINDS = [(truncate_package, 4), (flip_package_bits, 8), (truncate_part, 6), (flip_part_bits, 10), (shuffle_markup, 10),
         (huge_attribute, 3), (many_attributes, 3), (deep_nesting, 4), (entity_bomb, 5), (external_entity, 8),
         (parameter_entity, 4), (wrong_encoding, 6), (lying_lengths, 8), (zip_bomb, 1), (duplicate_names, 5), (cycle, 4),
         (climbing_names, 6), (odd_relationships, 5), (odd_targets, 5), (odd_content_types, 4), (bad_ticket, 6),
         (odd_page_numbers, 8), (odd_ticket_numbers, 8), (large_ticket, 3)]


class Generator:
    def __init__(self, packages, seed=SEED):
        self.seed = seed
        self.bases = {}
        for name in BASES:
            with zipfile.ZipFile(packages / f"{name}.xps") as archive:
                self.bases[name] = [(item.filename, archive.read(item)) for item in archive.infolist()]

    def document(self, index):
        """(kind, options of the run, the changed document)"""
        rng = random.Random(f"{self.seed}:{index}")
        document = Document(self.bases[rng.choice(BASES)])
        mutate = rng.choices([kind for kind, _ in KINDS], [weight for _, weight in KINDS])[0]
        mutate(rng, document)
        return mutate.__name__, rng.choice(OPTIONS), document

    def make(self, index):
        """(kind, options of the run, bytes of the package)"""
        kind, options, document = self.document(index)
        return kind, options, document.write()
