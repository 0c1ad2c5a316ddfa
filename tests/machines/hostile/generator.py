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

BASES = ["sample", "mixed", "tickets", "openxps", "odd-names", "alternate-content"]
OPTIONS = [[], ["--orientation", "Landscape"], ["--orientation", "Landscape"], ["--media", "ISOA3"],
           ["--media", "ISOA3", "--orientation", "Landscape"], ["--tessel-type", "1"]]
# What a package holds, by name.
MARKUP = r"\.(fpage|fdoc|fdseq|rels)$|\[Content_Types\]\.xml$|\.xml$"
PAGE, TICKET_NAME, TYPES = r"\.fpage$", r"(?<!\])\.xml$", r"content_types"
LINKS = r"\.(rels|fdoc|fdseq)$"

SCHEMA = "http://schemas.microsoft.com/windows/2003/08/printing/printschema"
TICKET = (f'<psf:PrintTicket xmlns:psf="{SCHEMA}framework" xmlns:psk="{SCHEMA}keywords" '
          'xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema" '
          'version="1">%s</psf:PrintTicket>')
FEATURE = '<psf:Feature name="psk:{}"><psf:Option name="psk:{}">{}</psf:Option></psf:Feature>'
LANDSCAPE = FEATURE.format("PageOrientation", "Landscape", "")
REFERENCE = '<psf:ScoredProperty name="psk:{0}"><psf:ParameterRef name="psk:{0}"/></psf:ScoredProperty>'
VALUE = '<psf:{0} name="psk:{1}"><psf:Value xsi:type="xsd:{2}">{3}</psf:Value></psf:{0}>'
NUMBERS = ["1e400", "-1e400", "NaN", "INF", "-0", "0", "-1", "2147483647", "2147483648", "-2147483648", "-2147483649",
           "4294967296", "99999999999999999999", "1e-400", "0x10", "1.5", "", " ", "+-1", "1e", ".", "9" * 5000, "1,2",
           "\u0661", "1e38", "3.5e38"]
TARGETS = ["#a", "?b", "Pages/1.fpage#a", "Pages/1.fpage?q", "http://127.0.0.1:47613/1.fpage", "file:///C:/1.fpage",
           "//server/share/1.fpage", "mailto:a", "", "/", ".", "..", "a" * 100000, "Pages/%00.fpage", "Pages/1%2Efpage",
           "%", "Pages//1.fpage", "\u00e9", "Pages/1.fpage ", "CON", "NUL.fpage", "C:\\1.fpage"]
CLIMBING = ["../evil.txt", "../../../../evil.txt", "..\\evil.txt", "%2e%2e/evil.txt", "a/%2E%2e/%2e./evil.txt",
            "/../evil.txt", "\\..\\evil.txt", "C:/evil.txt", "C:\\evil.txt", "//server/evil.txt", "CON", "NUL", "aux.fpage",
            "Documents/COM1", "a/..%5cevil.txt", "..%2fevil.txt", "a/../../evil.txt", "evil.txt:stream", "...", "a/. ./b",
            "/" * 3000 + "x", "a" * 60000, "\u2025/evil.txt", "evil.txt", " ..", ".. /evil.txt"]
PLACES = ["file:///" + SECRET, SECRET, SECRET.replace("/", "\\"), "hostile-secret.txt", "file:///etc/passwd",
          f"http://127.0.0.1:{CALLED_PORT}/secret", "\\\\127.0.0.1\\share\\secret", "in.xps"]
DOCUMENT_TYPES = ['<!DOCTYPE x [<!ENTITY e SYSTEM "{0}">]>', '<!DOCTYPE x SYSTEM "{0}">',
                  '<!DOCTYPE x PUBLIC "p" "{0}" [<!ENTITY e PUBLIC "q" "{0}">]>',
                  '<!-- a --><?p <!DOCTYPE?>\n<!DOCTYPE x [<!ENTITY e SYSTEM "{0}">]>',
                  '<!DOCTYPE x [<!ENTITY % p SYSTEM "{0}"> %p;]>', "<!DOCTYPE x [<!ENTITY % a '<!ENTITY e \"{0}\">'> %a;]>",
                  '<!DOCTYPE x [<!ENTITY % p "%q;"><!ENTITY % q "%p;"> %p;]>',
                  "<!DOCTYPE x [<!ATTLIST FixedPage Width CDATA '9' Height CDATA '9'>]>"]
# Markup in bytes that are not what they claim to be: of the text, and of the text without its declaration.
ENCODED = [lambda text, _: text.encode("utf-16-le") + b"x",
           lambda text, _: b"\xff\xfe" + text.encode("utf-16-le")[:-1],
           lambda text, _: b"\xfe\xff" + text.encode("utf-16-le"),
           lambda text, _: b"\xff\xfe" + text.encode(),
           lambda text, _: b"\xef\xbb\xbf" + text.encode("utf-16-le"),
           lambda text, _: b"\xef\xbb\xbf" * 2 + text.encode(),
           lambda text, _: text.encode().replace(b"<", b"\xc0\xbc", 2),
           lambda text, _: text.encode().replace(b'"', b'"\xed\xa0\x80', 1),
           lambda text, _: text.encode("utf-32-le"),
           lambda text, _: text.encode("utf-7"),
           lambda text, _: b"\xff\xfe" + text.encode("utf-16-le").replace(b"a\0", b"\x00\xdc", 1),
           lambda _, plain: b"\xff\xfe" + ("<?xml version='1.0' encoding='UTF-8'?>" + plain).encode("utf-16-le"),
           *(lambda _, plain, name=name: f"<?xml version='1.0' encoding='{name}'?>{plain}".encode()
             for name in ("UTF-16", "ISO-8859-1", "UTF-7", "IBM037", "x" * 9000, "utf-8\0", ""))]
# The records of an archive: the signature, and the fields that can lie, by their offset.
RECORDS = [(b"PK\3\4", [(6, "H"), (8, "H"), (14, "I"), (18, "I"), (22, "I"), (26, "H"), (28, "H")]),
           (b"PK\1\2", [(8, "H"), (10, "H"), (16, "I"), (20, "I"), (24, "I"), (28, "H"), (30, "H"), (32, "H"), (42, "I")]),
           (b"PK\5\6", [(4, "H"), (8, "H"), (10, "H"), (12, "I"), (16, "I"), (20, "H")])]


class Document:
    """The items of one package, to be changed."""

    def __init__(self, items):
        self.items = list(items)
        # Changes of the archive's bytes.
        self.after = []

    def names(self, pattern):
        return [name for name, _ in self.items if re.search(pattern, name, re.I)]

    def get(self, name):
        return next(content for item, content in self.items if item == name)

    def put(self, name, content):
        content = content.encode("utf-8", "surrogatepass") if isinstance(content, str) else content
        self.items = [(item, content if item == name else old) for item, old in self.items]

    def write(self):
        target = io.BytesIO()
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            with zipfile.ZipFile(target, "w") as archive:
                for name, content in self.items:
                    info = zipfile.ZipInfo("x", (2021, 3, 4, 5, 6, 8))
                    # The constructor would cut a name at its first zero byte.
                    info.filename = name
                    archive.writestr(info, content, zipfile.ZIP_DEFLATED, compresslevel=6)
        data = target.getvalue()
        for change in self.after:
            data = change(data)
        return data


def in_root(content, attribute):
    """Markup with text put into its root's start tag."""
    return re.sub(rb"(<(?![?!])[^\s/>]+)", lambda tag: tag[1] + b" " + attribute.encode(), content, count=1)


def below_root(content, inner):
    """Markup with text put right below its root."""
    return re.sub(rb"(<(?![?!])[^>]*?)(/?)>", lambda tag: tag[1] + b">" + inner + (b"</x>" if tag[2] else b""), content, count=1)


def before_root(content, text):
    return re.sub(rb"<(?![?!])", lambda _: text + b"<", content, count=1)


def pick(rng, document, pattern=MARKUP):
    """A part, most often a page or a ticket; and any where there is none of this kind."""
    if pattern is MARKUP:
        pattern = rng.choice([MARKUP, PAGE, PAGE, TICKET_NAME])
    return rng.choice(document.names(pattern) or document.names(MARKUP))


# What makes a kind of mutation: of the archive's bytes, of the content of a part, of a whole ticket, of texts in a part.
def of_package(change):
    return lambda rng, document: document.after.append(lambda data: change(rng, data))


def of_part(change, pattern=MARKUP):
    def mutate(rng, document):
        name = pick(rng, document, pattern)
        document.put(name, change(rng, document.get(name)))
    return mutate


def of_ticket(make):
    return of_part(lambda rng, _: make(rng), TICKET_NAME)


def of_text(pattern, *replacements):
    """Each replacement is a regular expression, and the bytes that take the place of one, two or all of its matches."""
    def change(rng, content):
        found, bytes_instead = rng.choice(replacements)
        return re.sub(found, lambda match: bytes_instead.replace(b"<0>", match[0]), content, count=rng.choice([1, 2, 0]))
    return of_part(change, pattern)


def cut(rng, data):
    return data[: rng.randrange(len(data) + 1)]


def flip_bits(rng, data):
    data = bytearray(data)
    for _ in range(rng.choice([1, 1, 3, 20, 200]) if data else 0):
        data[rng.randrange(len(data))] ^= 1 << rng.randrange(8)
    return bytes(data)


def lie_about_lengths(rng, data):
    data = bytearray(data)
    for _ in range(rng.choice([1, 2, 4])):
        signature, fields = rng.choice(RECORDS)
        offset, form = rng.choice(fields)
        at = rng.choice([record.start() for record in re.finditer(re.escape(signature), data)]) + offset
        old = struct.unpack_from("<" + form, data, at)[0]
        new = rng.choice([0, 1, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFF, 0xFFFFFFFE, 0x10000, old + 1, max(old - 1, 0), old * 2])
        struct.pack_into("<" + form, data, at, new & (0xFFFF if form == "H" else 0xFFFFFFFF))
    return bytes(data)


def shuffle(rng, content):
    tokens = re.findall(rb"<[^>]*>|[^<]+|<", content) or [b""]
    for _ in range(rng.choice([1, 2, 5])):
        at, other = rng.randrange(len(tokens)), rng.randrange(len(tokens))
        # Left out, doubled, or exchanged.
        tokens[at], tokens[other] = rng.choice([(b"", tokens[other]), (tokens[at] * 2, tokens[other]), (tokens[other], tokens[at])])
    return b"".join(tokens)


def add_huge_attribute(rng, content):
    filler = rng.choice(["x", "&amp;", "\u20ac", "&#65;", " "]) * (rng.choice([100, 1000, 4000]) << 10)
    key = rng.choice(["Huge", "Name", "Width", "BleedBox", "ContentBox", "version", "xmlns:h", "xml:lang"])
    return in_root(content, f'{key}="{filler}"')


def add_many_attributes(rng, content):
    name = rng.choice(["a{}", "xmlns:a{}", "a"])
    return in_root(content, " ".join(name.format(number) + '="u"' for number in range(rng.choice([100, 3000, 20000, 100000]))))


def nest_deeply(rng, content):
    depth, element = rng.choice([200, 300, 3000, 100000]), rng.choice(["Canvas", "a", "a xmlns='u'", "psf:Feature name='psk:a'"])
    return below_root(content, (f"<{element}>" * depth + f"</{element.split()[0]}>" * depth).encode())


def add_entity_bomb(rng, content):
    levels = rng.choice([2, 5, 10, 40])
    entities = [f'<!ENTITY l0 "{"lol" * rng.choice([1, 20000])}">']
    entities += [f'<!ENTITY l{level} "{f"&l{level - 1};" * rng.choice([2, 10])}">' for level in range(1, levels)]
    entities += rng.choice([[], [], [], [], [f'<!ENTITY l{levels - 1} "&l{levels - 1};">']])
    content = before_root(content, f'<!DOCTYPE x [{"".join(entities)}]>'.encode())
    use = f"&l{levels - 1};"
    return rng.choice([in_root(content, f'Bomb="{use}"'), below_root(content, use.encode())])


def add_entity(rng, content):
    content = before_root(content, rng.choice(DOCUMENT_TYPES).replace("{0}", rng.choice(PLACES)).encode())
    content = rng.choice([below_root(content, b"&e;"), in_root(content, 'Name="&e;"'), content])
    return rng.choice([content] * 4 + [b"\xff\xfe" + content.decode("utf-8", "replace").encode("utf-16-le")])


def encode_wrongly(rng, content):
    text = content.decode("utf-8", "replace")
    return rng.choice(ENCODED)(text, re.sub(r"^<\?xml.*?\?>", "", text))


def change_page_numbers(rng, content):
    for _ in range(rng.choice([1, 2, 4])):
        value, key = rng.choice(NUMBERS), rng.choice(["Width", "Height", "BleedBox", "ContentBox"])
        if key.endswith("Box"):
            value = ",".join(rng.choices(NUMBERS, k=rng.choice([0, 3, 4, 4, 4, 5])))
        content = re.sub(rb"(<FixedPage[^>]*?)\s" + key.encode() + rb'="[^"]*"', rb"\1", content, count=1)
        content = in_root(content, rng.choice([f'{key}="{value}"'] * 9 + [""]))
    return content


def make_zip_bomb(rng, document):
    name = pick(rng, document)
    content = document.get(name)
    blank = b" " * (rng.choice([8, 64, 200, 600]) << 20)
    form = rng.choice(["before", "inside", "comment", "pieces", "nested"])
    if form == "pieces":
        pieces = [(f"{name}/[{number}]{last}.piece", blank[: len(blank) // 4]) for number, last in enumerate(["", "", "", ".last"])]
        document.items = [item for item in document.items if item[0] != name] + pieces
    else:
        document.put(name, {"before": lambda: blank + content, "inside": lambda: below_root(content, blank),
                            "comment": lambda: before_root(content, b"<!--" + blank + b"-->"),
                            "nested": lambda: Document([("bomb.zip", blank)]).write()}[form]())


def double_name(rng, document):
    name, content = rng.choice(document.items)
    again = rng.choice([name, name.upper(), "/" + name, name.replace("/", "\\"), name.replace("e", "%65", 1),
                        name + "/[0].last.piece", name + "/[0].piece", name + "/x"])
    document.items.insert(rng.randrange(len(document.items) + 1), (again, rng.choice([content, b"", b"<x/>"])))


def add_climbing_name(rng, document):
    document.items.append((rng.choice([*CLIMBING, "evil\x01.txt"]), b"evil " + SENTINEL[:8]))


def remove_part(rng, document):
    name = pick(rng, document, rng.choice([r"\.rels$", TYPES, MARKUP]))
    document.items = [item for item in document.items if item[0] != name]


def make_cycle(rng, document):
    sequence, documents, pages = (rng.choice(document.names(kind)) for kind in (r"\.fdseq$", r"\.fdoc$", PAGE))
    source, target = rng.choice([(sequence, sequence), (documents, sequence), (documents, documents), (sequence, pages),
                                 (documents, pages)])
    reference = f'Source="/{target}"'.encode()
    entry = (b"<DocumentReference " if source == sequence else b"<PageContent ") + reference + b"/>"
    content = document.get(source)
    document.put(source, rng.choice([below_root(content, entry * rng.choice([1, 2, 1000])),
                                     re.sub(rb'Source="[^"]*"', lambda _: reference, content)]))


def make_bad_ticket(rng):
    deep = rng.choice([10, 250, 2000])
    cyclic = "".join(f'<psf:{element} name="psk:p{n}"><psf:ParameterRef name="psk:p{(n + 1) % 3}"/></psf:{element}>'
                     for n in range(3) for element in ("ScoredProperty", "ParameterInit"))
    media = (FEATURE.format("PageMediaSize", "CustomMediaSize", REFERENCE.format("MediaSizeWidth")) +
             '<psf:ParameterInit name="psk:MediaSizeWidth"><psf:ParameterRef name="psk:MediaSizeWidth"/></psf:ParameterInit>')
    orientation = '<psf:Feature name="psk:PageOrientation">%s</psf:Feature>'
    option = '<psf:Option name="psk:Landscape"/>'
    return rng.choice([
        "", "no markup", "\0" * 100, "%PDF-1.4", "{}", "<html/>", "<PrintTicket/>", TICKET.replace("version", "other") % "",
        TICKET.replace(SCHEMA, "urn:x") % "", TICKET.replace("psf", "a") % "",
        TICKET.replace("xmlns:psf", "xmlns").replace("psf:", "") % "", TICKET % "<![CDATA[<!DOCTYPE]]>" + "<!-- x -->" * 1000,
        *(TICKET % content for content in (
            cyclic, media, orientation % "", orientation % option * 2000, (orientation % "") * 2000, orientation % (option * 500),
            orientation % "<psf:Option/>", *(orientation % f'<psf:Option name="{name}"/>' for name in ("Landscape", "no:Landscape", ":")),
            '<psf:Feature name="psk:\'] | //*[\'"/>', '<psf:Feature name=\'psk:"\'/>', f'<psf:Feature name="psk:{"x" * 100000}"/>',
            '<psf:Feature name="psk:PageOrientation">' * deep + "</psf:Feature>" * deep))])


def make_odd_numbers(rng):
    def value(element, name):
        return rng.choice(9 * [VALUE.format(element, name, rng.choice(["integer", "string", "x"]), rng.choice(NUMBERS))] + [""])

    scale = ("OffsetWidth", "OffsetHeight", "ScaleWidth", "ScaleHeight", "Scale")
    sheet = value("ScoredProperty", "MediaSizeWidth") + value("ScoredProperty", "MediaSizeHeight")
    return TICKET % (
        FEATURE.format("PageMediaSize", rng.choice(["CustomMediaSize", "ISOA4", "ISOA3", "PSCustomMediaSize", "Unheard"]), sheet) +
        rng.choice(["", FEATURE.format("PageScaling", rng.choice(["Custom", "CustomSquare"]), "".join(map(REFERENCE.format, scale)))
                    + "".join(value("ParameterInit", name) for name in scale)]) + rng.choice(["", LANDSCAPE]))


def make_large_ticket(rng):
    parameter = VALUE.format("ParameterInit", "P{0}", "integer", 1)
    reference = REFERENCE.replace("{0}", "P{0}")
    many = rng.choice([FEATURE.format("F{0}", "O", reference) + parameter, parameter, reference, LANDSCAPE,
                       FEATURE.format("F{0}", "O", ""), FEATURE.format("PageScaling", "O{0}", ""),
                       '<psf:Feature xmlns:p{0}="urn:{0}" name="p{0}:F{0}"/>'])
    return TICKET % (LANDSCAPE + "".join(map(many.format, range(rng.choice([1000, 8000])))))


def numbered(entry):
    return b"".join(entry % number for number in range(20000))


# The kinds, by the name that the report gives them, with a weight: the dear ones come more rarely.
KINDS = {
    "truncated package": (4, of_package(cut)),
    "bits of the package": (8, of_package(flip_bits)),
    "lengths that lie": (8, of_package(lie_about_lengths)),
    "truncated part": (6, of_part(cut)),
    "bits of a part": (10, of_part(flip_bits)),
    "shuffled markup": (10, of_part(shuffle)),
    "huge attribute": (3, of_part(add_huge_attribute)),
    "many attributes": (3, of_part(add_many_attributes)),
    "deep nesting": (4, of_part(nest_deeply)),
    "entity bomb": (5, of_part(add_entity_bomb)),
    "document type": (12, of_part(add_entity)),
    "wrong encoding": (6, of_part(encode_wrongly)),
    "odd page numbers": (8, of_part(change_page_numbers, PAGE)),
    "zip bomb": (1, make_zip_bomb),
    "duplicate names": (5, double_name),
    "climbing name": (3, add_climbing_name),
    "removed part": (3, remove_part),
    "cycle": (4, make_cycle),
    "bad ticket": (6, of_ticket(make_bad_ticket)),
    "odd ticket numbers": (8, of_ticket(make_odd_numbers)),
    "large ticket": (3, of_ticket(make_large_ticket)),
    "odd targets": (8, of_text(LINKS, *((rb'(?<=(?:Source|Target)=")[^"]*', text.encode()) for text in TARGETS + CLIMBING))),
    "odd relationships": (5, of_text(
        r"\.rels$", (rb"<Relationship\s[^>]*>", b"<0>" * 2), (rb"<Relationship\s[^>]*>", b"<0>" * 500), (rb"(?s).+", b""),
        (rb"(?=Type=)", b'TargetMode="External" '), (rb"(?=Type=)", b'TargetMode="x" '), (rb'(?<=Type=")[^"]*', b""),
        (rb'(?<=Id=")[^"]*', b"R1"), (rb"(?=</Relationships>)", numbered(b'<Relationship Id="M%d" Type="t" Target="/x"/>')))),
    "odd content types": (5, of_text(
        TYPES, (rb"<Default[^>]*>", b""), (rb"<Override[^>]*>", b"<0>" * 2), (rb'(?<=ContentType=")[^"]*', b"&lt;&#10;" * 99),
        (rb"content-types", b"other-types"), (rb"(?=</Types>)", numbered(b'<Override PartName="/m%d" ContentType="a/b"/>')),
        *((rb'(?<=PartName=")[^"]*', text.encode()) for text in CLIMBING)))}


class Generator:
    def __init__(self, packages, seed=SEED):
        self.seed = seed
        self.bases = []
        for name in BASES:
            with zipfile.ZipFile(packages / f"{name}.xps") as archive:
                self.bases.append([(item.filename, archive.read(item)) for item in archive.infolist()])

    def make(self, index):
        """(kind, options of the run, the changed document)"""
        rng = random.Random(f"{self.seed}:{index}")
        document = Document(rng.choice(self.bases))
        kind, = rng.choices(list(KINDS), [weight for weight, _ in KINDS.values()])
        KINDS[kind][1](rng, document)
        return kind, rng.choice(OPTIONS), document
