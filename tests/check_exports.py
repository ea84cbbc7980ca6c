#!/usr/bin/env python3
"""Checks the dynamic symbol table of libvarnice.so: the public classes and C
functions are exported, internal helpers are not, and every exported name is
one of tests/exported_names.txt.
usage: check_exports.py libvarnice.so exported_names.txt"""
import re
import subprocess
import sys

MUST_EXPORT = [
    "VarniceVersionString",
    "VarniceRegisterEncoding",
    "VarniceEncodingName",
    "VarniceEncodingNominalCharLength",
    "VarniceConvertToUnicode",
    "VarniceConvertFromUnicode",
    "VarniceCopyDataBetweenEncodings",
    "UnicodeLibrary::VersionString",
    "qz_exception::what",
    "UnicodeLibBehavior::GetDefaultBehavior",
    "UnicodeLibBehavior::gInitialDefaultBehavior",
    "TextEncoding::Lookup(char const*, unsigned int)",
    "TextEncoding::gBaseEncodings",
    "EncodingVariation::gAllVariations",
    "TextEncodingID::TextEncodingID(unsigned long)",
    "EncodingVariationID::operator+",
    "LinearAllocator::Allocate",
    "UnicodeLibPlaceable::operator new",
    "QZUnicodePerThread::get",
    "typeinfo for UnicodeLibraryException",
    "qz_string::c_str() const",
    "qz_wstring::c_str() const",
    "operator+(qz_string const&, qz_string const&)",
    "ChunkTableLookup(ChunkTableEntryUSL const*",
    "vtable for PlaneTable<unsigned short, unsigned long>",
    "GapTable<unsigned short, unsigned long>::Lookup(",
    "Compander::CompandByte(",
    "sjis_compander_table",
    "FiniteStateMachine<unsigned char, unsigned long>::DistinguishCharacters(",
    "SimpleFiniteStateMachine<unsigned char, unsigned short>::AddState(",
    "InternalEncoding::Unicode20()",
    "InternalEncoding::MayBreakLineBetween(",
    "BlockConverter_16_to_8::ReachedCapacity(",
    "BlockExternalEncoding::CreateCharSourceToUnicode(",
    "CharSource_8_to_16::FillBuffer()",
    "CharSink_16_to_8::InternalPut(",
    "typeinfo for ExternalEncoding::ToUnicodeSource",
    "vtable for ToUnicodeProxySource",
    "DirectedChar16ProxySink::SetBehavior(",
    "MBCStoUnicodeTable::Assign(",
    "MBCStoUnicodeTable::Lookup(",
    "UTF8_CHAR_LENGTHS_FROM_LEAD",
    "UTF8toWhatever::Convert(",
    "UTF8fromWhatever::Convert(",
    "vtable for UTF8Detector",
    "vtable for UTF8EncodingVariant",
    "UTF7toWhatever::Finish(",
    "UTF7Detector::Loser()",
    "UCS2toWhatever::Convert(",
    "vtable for UCS2variant",
    "vtable for UnicodeByteOrderMarkVariant",
    "BOMinserter::Convert(",
    "PlatformByteOrder::IsBigEndian()",
    "EncodingVariation::UTF8()",
    "EncodingVariation::PlatformByteOrder()",
    "ExternalEncoding::Unicode20UTF8()",
    "ExternalEncoding::Unicode20ByteStream()",
    "ExternalEncodingConverter::ExternalEncodingConverter(",
    "InternalEncodingConverter::ActualInputEncoding()",
    "vtable for ExternalEncodingConverterSink",
    "InternalEncodingConverterSink::InternalEncodingConverterSink(",
    "typeinfo for InvalidOutputEncoding",
    "qz_string::qz_string(unsigned short const*, unsigned int, ExternalEncoding const&)",
    "qz_wstring::qz_wstring(char const*, ExternalEncoding const&)",
    "ExternalEncoding::ShiftJIS()",
    "ExternalEncoding::CCSID1027()",
    "ExternalEncoding::ISO2022JP()",
    "MBCSEncoding::MBCSEncoding(",
    "MBCSEncoding::FromUnicode(unsigned short) const",
    "MBCStoUnicode::Convert(",
    "MBCSfromUnicode::Convert(",
    "typeinfo for MBCSDetector",
    "GenericISO2022Encoding::CreateConverterToUnicode(",
    "ISO2022toUnicode::Convert(",
    "ISO2022fromUnicode::Finish(",
    "typeinfo for ISO2022JPEncoding",
    "ISO2022JPDetector::Scan(",
    "HPPrinterVariant::HPPrinterVariant(",
    "HPPrinterVariant::ToUnicode::Convert(",
    "HPPrinterVariant::FromUnicode::Convert(",
    "vtable for HPPrinterVariation",
    "EncodingVariation::HPPrinter()",
    "BufferCharSink::PutBuffer(",
    "vtable for StringChar16Source",
    "FileCharSource::FillBuffer()",
    "StdioSource::gets(",
    "Stdio16Source::fgets(",
    "CharSink::printf(",
    "Char16Sink::vprintf(unsigned short const*",
    "PrintfEngine<CharSink, char>::Print(",
    "PrintfEngine<Char16Sink, unsigned short>::Print(",
    "CharacterProperty::Test(unsigned long) const",
    "CharacterTest::IndexOf(",
    "CharacterScript::Of(",
    "vtable for NamedCharacterScript",
    "AnyDefinedCharacter",
    "Ctype_xdigit",
    "CharwiseUnicodeComparator::CompareBuffers(",
    "typeinfo for JISUnicodeComparator",
    "SameIgnoringCase(",
    "TestUnicodeCharacter",
    "CombineNCharprops",
    "qz_wctype",
    "qz_towctrans",
    "Varnice_compare_JIS_pl",
    "UCS2toupper",
    "UTF8toupper",
    "qz_wcstok",
    "qz_wcsftime",
    "qz_fgetws",
    "qz_fwide",
    "qz_setlocale",
    "qz_localeconv",
    "GetCPUTime",
    "PutFileIntoBinaryMode",
    "WideFileInfo::FindFile(",
    "WideFileInfo::sFileTable",
    "Locale::CurrentExternalEncoding()",
    "ScanfEngine<unsigned short>::Scan(",
    "SampleUnicodeSource::SampleUnicodeSource(",
    "SampleTextSource::FillBuffer()",
    "EncodingRepertoire::Test(",
]
# Namespaces and prefixes that hold implementation details only.
MUST_NOT_EXPORT = ["varnice::internal::", "varnice_internal_", "(anonymous namespace)"]


SPECIAL = re.compile(r"^(?:vtable|typeinfo name|typeinfo|VTT|construction vtable|guard variable"
                     r"|(?:non-)?virtual thunk to) (?:for )?")


def without_template_arguments(text):
    out, depth = [], 0
    for c in text:
        depth += c == "<"
        if depth == 0:
            out.append(c)
        depth -= c == ">"
    return "".join(out)


def owner(symbol):
    """The top-level name a demangled symbol is declared in."""
    text = without_template_arguments(SPECIAL.sub("", symbol))
    head, _, params = text.partition("(")
    head = head.split("::")[0].split()[-1]  # a template function's return type goes
    if head.startswith("operator"):
        # A free operator belongs to the class of its first operand.
        first = re.match(r"\s*(?:const\s+)?([A-Za-z_]\w*)", params)
        return first.group(1) if first else head
    return head


def read_names(path):
    """(interface names, prefixes, our own names) from the list file."""
    names, prefixes, ours, section = set(), [], set(), "interface"
    for line in open(path, encoding="utf-8"):
        line = line.strip()
        if not line or line.startswith("#"):
            continue
        if line == "[ours]":
            section = "ours"
        elif section == "ours":
            ours.add(line)
        elif line.endswith("*"):
            prefixes.append(line[:-1])
        else:
            names.add(line)
    return names, prefixes, ours


def main() -> int:
    out = subprocess.run(["nm", "-D", "--defined-only", "-C", sys.argv[1]],
                         check=True, capture_output=True, text=True).stdout
    names = [line.split(" ", 2)[-1] for line in out.splitlines() if line.strip()]
    failures = [f"missing export: {m}" for m in MUST_EXPORT
                if not any(m in n for n in names)]
    failures += [f"internal symbol exported: {n}" for n in names
                 if any(p in n for p in MUST_NOT_EXPORT)]
    interface, prefixes, ours = read_names(sys.argv[2])
    owners = {}
    for n in names:
        owners.setdefault(owner(n), n)
    extra = sorted(o for o in owners if o in ours)
    unlisted = sorted(o for o in owners if o not in ours and o not in interface
                      and not any(o.startswith(p) for p in prefixes))
    failures += [f"exported name outside the interface: {o} (e.g. {owners[o]})" for o in unlisted]
    for f in failures:
        print(f)
    print(f"{len(names)} exported symbols of {len(owners)} names checked;"
          f" exported beyond the interface on purpose: {', '.join(extra) or 'nothing'}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
