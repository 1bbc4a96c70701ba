// The type library as early-bound hosts import it, read from the registered
// library through ITypeLib/ITypeInfo (what a host's compiler and the
// automation layer see), on the bitness this program is built for:
// - the records: their size and every field's name, type and offset, against
//   the layout this program was compiled with from the generated header and
//   against the fields the records are described with;
// - every member of every interface (the vtable half of each dual
//   interface): its dispatch identifier, kind, and each parameter's type,
//   flags and default value, written as one line and compared with the table
//   in the file named by the first argument (type_library_members.txt).
// One line per check, then the sentinel line; the exit code is the number of
// failed checks.

#include "test_checks.hpp"

#include <cstddef>
#include <fstream>
#include <map>
#include <vector>

namespace {

using quillbank_test::Check;

std::string Narrow(const wchar_t* text, std::size_t length) {
    return quillbank_test::Narrow(std::wstring(text, length));
}

std::string Take(BSTR text) {
    std::string out = text == nullptr ? "" : Narrow(text, SysStringLen(text));
    SysFreeString(text);
    return out;
}

std::string NameOf(ITypeInfo* info, MEMBERID member = MEMBERID_NIL) {
    BSTR name = nullptr;
    info->GetDocumentation(member, &name, nullptr, nullptr, nullptr);
    return Take(name);
}

// A type as a host's import sees it: base types by their IDL names, a type
// of another library with that library's name in front.
std::string TypeText(ITypeInfo* info, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_PTR:
            return TypeText(info, *type.lptdesc) + "*";
        case VT_SAFEARRAY:
            return "SAFEARRAY(" + TypeText(info, *type.lptdesc) + ")";
        case VT_USERDEFINED: {
            ITypeInfo* referenced = nullptr;
            if (FAILED(info->GetRefTypeInfo(type.hreftype, &referenced))) {
                return "(unresolved)";
            }
            std::string text = NameOf(referenced);
            ITypeLib* library = nullptr;
            UINT index = 0;
            if (SUCCEEDED(referenced->GetContainingTypeLib(&library, &index))) {
                const std::string libraryName = [&] {
                    BSTR name = nullptr;
                    library->GetDocumentation(-1, &name, nullptr, nullptr, nullptr);
                    return Take(name);
                }();
                if (libraryName != "Quillbank") {
                    text = libraryName + "." + text;
                }
                library->Release();
            }
            referenced->Release();
            return text;
        }
        case VT_BSTR: return "BSTR";
        case VT_BOOL: return "VARIANT_BOOL";
        case VT_I4: return "long";
        case VT_I2: return "short";
        case VT_UI4: return "unsigned long";
        case VT_R8: return "double";
        case VT_DATE: return "DATE";
        case VT_VARIANT: return "VARIANT";
        case VT_DISPATCH: return "IDispatch*";
        case VT_UNKNOWN: return "IUnknown*";
        case VT_HRESULT: return "HRESULT";
        case VT_VOID: return "void";
        default: return "vt" + std::to_string(type.vt);
    }
}

std::string ValueText(const VARIANT& value) {
    char text[64];
    switch (V_VT(&value)) {
        case VT_BSTR: return "\"" + Narrow(V_BSTR(&value), SysStringLen(V_BSTR(&value))) + "\"";
        case VT_R8: std::snprintf(text, sizeof text, "double:%g", V_R8(&value)); return text;
        case VT_I4: return "long:" + std::to_string(V_I4(&value));
        case VT_I2: return "short:" + std::to_string(V_I2(&value));
        case VT_BOOL: return "bool:" + std::to_string(V_BOOL(&value));
        case VT_UI4: return "ulong:" + std::to_string(V_UI4(&value));
        default: return "vt" + std::to_string(V_VT(&value));
    }
}

std::string FlagsText(USHORT flags) {
    std::string text;
    const auto add = [&](USHORT flag, const char* name) {
        if ((flags & flag) != 0) {
            text += text.empty() ? name : std::string(",") + name;
        }
    };
    add(PARAMFLAG_FIN, "in");
    add(PARAMFLAG_FOUT, "out");
    add(PARAMFLAG_FRETVAL, "retval");
    add(PARAMFLAG_FOPT, "optional");
    add(PARAMFLAG_FLCID, "lcid");
    return text;
}

// One member: "Interface.Member id kind (param, ...)", each parameter as
// "[flags] type name" with " = default" when it has one.
std::string MemberText(ITypeInfo* info, const std::string& interfaceName, const FUNCDESC& member) {
    BSTR names[32] = {};
    UINT count = 0;
    info->GetNames(member.memid, names, 32, &count);
    std::string text = interfaceName + "." + Take(names[0]) + " id=" + std::to_string(member.memid) + " ";
    switch (member.invkind) {
        case INVOKE_PROPERTYGET: text += "get"; break;
        case INVOKE_PROPERTYPUT: text += "put"; break;
        case INVOKE_PROPERTYPUTREF: text += "putref"; break;
        default: text += "call"; break;
    }
    text += " " + TypeText(info, member.elemdescFunc.tdesc) + " (";
    for (SHORT i = 0; i < member.cParams; ++i) {
        const ELEMDESC& parameter = member.lprgelemdescParam[i];
        const USHORT flags = parameter.paramdesc.wParamFlags;
        // A property put's value has no name of its own in the library.
        const bool value = i + 1 == member.cParams &&
                           (member.invkind == INVOKE_PROPERTYPUT || member.invkind == INVOKE_PROPERTYPUTREF);
        std::string name = static_cast<UINT>(i + 1) < count ? Take(names[i + 1]) : "";
        if (value) {
            name = "(value)";
        }
        text += std::string(i == 0 ? "" : ", ") + "[" + FlagsText(flags) + "] " + TypeText(info, parameter.tdesc) +
                " " + name;
        if ((flags & PARAMFLAG_FHASDEFAULT) != 0) {
            text += " = " + (parameter.paramdesc.pparamdescex == nullptr
                                 ? std::string("(missing)")
                                 : ValueText(parameter.paramdesc.pparamdescex->varDefaultValue));
        }
    }
    for (UINT i = static_cast<UINT>(member.cParams) + 1; i < count; ++i) {
        SysFreeString(names[i]);
    }
    return text + ")";
}

struct Field {
    const char* name;
    VARTYPE type;
    std::size_t offset;  // in the struct this program was compiled with
};

// A record's size and fields in the library against the compiled layout and
// the described fields.
void CheckRecord(ITypeLib* library, REFGUID guid, const char* recordName, std::size_t size,
                 const std::vector<Field>& fields) {
    const std::string label = std::string(recordName) + " (" + std::to_string(sizeof(void*) * 8) + "-bit)";
    ITypeInfo* info = nullptr;
    if (FAILED(library->GetTypeInfoOfGuid(guid, &info))) {
        Check(false, label + " is in the type library");
        return;
    }
    TYPEATTR* attributes = nullptr;
    info->GetTypeAttr(&attributes);
    Check(attributes->cbSizeInstance == size,
          label + " has the size a host compiles: " + std::to_string(size),
          std::to_string(attributes->cbSizeInstance));
    Check(attributes->cVars == fields.size(), label + " has " + std::to_string(fields.size()) + " fields",
          std::to_string(attributes->cVars));
    for (UINT i = 0; i < attributes->cVars && i < fields.size(); ++i) {
        VARDESC* field = nullptr;
        info->GetVarDesc(i, &field);
        const std::string name = NameOf(info, field->memid);
        const std::string fieldLabel = label + " field " + std::to_string(i) + " " + fields[i].name;
        Check(name == fields[i].name, fieldLabel + " by name", name);
        Check(field->elemdescVar.tdesc.vt == fields[i].type, fieldLabel + " type",
              std::to_string(field->elemdescVar.tdesc.vt));
        Check(field->varkind == VAR_PERINSTANCE && field->oInst == fields[i].offset,
              fieldLabel + " at offset " + std::to_string(fields[i].offset), std::to_string(field->oInst));
        info->ReleaseVarDesc(field);
    }
    info->ReleaseTypeAttr(attributes);
    info->Release();
}

void CheckRecords(ITypeLib* library) {
    // {1D9E6DE5-...} and the other records' identifiers.
    static const GUID kAssetData = {0x1D9E6DE5, 0x8E52, 0x4125, {0xAA, 0x99, 0x5B, 0xEF, 0xEA, 0x93, 0x80, 0xB1}};
    static const GUID kFontData = {0x61FDAC65, 0x89E2, 0x4FF1, {0xB6, 0x26, 0xDC, 0xA3, 0xC3, 0xA8, 0x61, 0x50}};
    static const GUID kLocationData = {0x4B97C82D, 0x987F, 0x41F7, {0xBB, 0x33, 0x84, 0x4A, 0xE8, 0xE4, 0xC3, 0x56}};
    static const GUID kRectangle = {0x4C24E635, 0xFF49, 0x4CEC, {0xB0, 0xA8, 0xAB, 0x28, 0x09, 0x5D, 0xA4, 0xC7}};
    CheckRecord(library, kFontData, "FontData", sizeof(::FontData),
                {{"Name", VT_BSTR, offsetof(::FontData, Name)},
                 {"Size", VT_R8, offsetof(::FontData, Size)},
                 {"Bold", VT_BOOL, offsetof(::FontData, Bold)},
                 {"Italic", VT_BOOL, offsetof(::FontData, Italic)},
                 {"Underline", VT_BOOL, offsetof(::FontData, Underline)}});
    CheckRecord(library, kRectangle, "Rectangle", sizeof(::Rectangle),
                {{"Left", VT_I4, offsetof(::Rectangle, Left)},
                 {"Top", VT_I4, offsetof(::Rectangle, Top)},
                 {"Width", VT_I4, offsetof(::Rectangle, Width)},
                 {"Height", VT_I4, offsetof(::Rectangle, Height)}});
    CheckRecord(library, kAssetData, "AssetData", sizeof(::AssetData),
                {{"Filename", VT_BSTR, offsetof(::AssetData, Filename)},
                 {"Description", VT_BSTR, offsetof(::AssetData, Description)},
                 {"Source", VT_BSTR, offsetof(::AssetData, Source)}});
    CheckRecord(library, kLocationData, "LocationData", sizeof(::LocationData),
                {{"StartPoint", VT_BSTR, offsetof(::LocationData, StartPoint)},
                 {"EndPoint", VT_BSTR, offsetof(::LocationData, EndPoint)},
                 {"MapName", VT_BSTR, offsetof(::LocationData, MapName)}});
}

// Every member of the vtable half of every interface, as lines.
std::vector<std::string> MemberLines(ITypeLib* library) {
    const std::pair<const IID*, const char*> interfaces[] = {
        {&IID__Constants, "_Constants"},
        {&IID__Functions, "_Functions"},
        {&IID__PersistedPropertyCollection, "_PersistedPropertyCollection"},
        {&IID__ChildElement, "_ChildElement"},
        {&IID__ChildElementCollection, "_ChildElementCollection"},
        {&IID__Storyboard, "_Storyboard"},
        {&IID__StoryboardCollection, "_StoryboardCollection"},
        {&IID__LessonMap, "_LessonMap"},
        {&IID__LessonMapCollection, "_LessonMapCollection"},
        {&IID__Lesson, "_Lesson"},
    };
    std::vector<std::string> lines;
    for (const auto& [iid, name] : interfaces) {
        ITypeInfo* dispatch = nullptr;
        ITypeInfo* vtable = nullptr;
        if (SUCCEEDED(library->GetTypeInfoOfGuid(*iid, &dispatch))) {
            HREFTYPE reference = 0;
            if (SUCCEEDED(dispatch->GetRefTypeOfImplType(-1, &reference))) {
                dispatch->GetRefTypeInfo(reference, &vtable);
            }
            dispatch->Release();
        }
        if (vtable == nullptr) {
            lines.push_back(std::string(name) + " (no vtable interface)");
            continue;
        }
        TYPEATTR* attributes = nullptr;
        vtable->GetTypeAttr(&attributes);
        const WORD count = attributes->cFuncs;
        vtable->ReleaseTypeAttr(attributes);
        for (UINT i = 0; i < count; ++i) {
            FUNCDESC* member = nullptr;
            if (SUCCEEDED(vtable->GetFuncDesc(i, &member))) {
                lines.push_back(MemberText(vtable, name, *member));
                vtable->ReleaseFuncDesc(member);
            }
        }
        vtable->Release();
    }
    return lines;
}

void CheckMembers(ITypeLib* library, const char* tablePath) {
    std::vector<std::string> expected;
    std::ifstream table(tablePath);
    Check(static_cast<bool>(table), std::string("the member table can be read: ") + tablePath);
    for (std::string line; std::getline(table, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (!line.empty() && line[0] != '#') {
            expected.push_back(line);
        }
    }
    const std::vector<std::string> seen = MemberLines(library);
    for (std::size_t i = 0; i < expected.size() || i < seen.size(); ++i) {
        const std::string want = i < expected.size() ? expected[i] : "(nothing)";
        const std::string got = i < seen.size() ? seen[i] : "(nothing)";
        Check(want == got, "member " + std::to_string(i + 1) + ": " + want, "the library has " + got);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::printf("usage: type_library_test MEMBER-TABLE\n");
        return 1;
    }
    if (!quillbank_test::StartCom()) {
        return 1;
    }
    ITypeLib* library = nullptr;
    const HRESULT hr = LoadRegTypeLib(LIBID_Quillbank, 2, 0, 0x0409, &library);
    Check(hr == S_OK && library != nullptr, "the registered type library loads");
    if (library != nullptr) {
        CheckRecords(library);
        CheckMembers(library, argv[1]);
        library->Release();
    }
    return quillbank_test::Finish("type library (" + std::to_string(sizeof(void*) * 8) + "-bit)");
}
