#include "com/errors.hpp"

#include <new>
#include <string>

#include <quillbank/error.hpp>

#include "com/text.hpp"

namespace quillbank::com {

HRESULT StatusOf(long number) {
    if (number > 0 && number < 65536) {
        return static_cast<HRESULT>(0x800A0000u + static_cast<unsigned long>(number));
    }
    return static_cast<HRESULT>(number);
}

HRESULT RaiseError(REFIID iid, long number, std::string_view source, std::string_view description) {
    ICreateErrorInfo* create = nullptr;
    if (SUCCEEDED(CreateErrorInfo(&create))) {
        const std::wstring wideSource = Wide(source);
        const std::wstring wideDescription = Wide(description);
        create->SetGUID(iid);
        create->SetSource(const_cast<LPOLESTR>(wideSource.c_str()));
        create->SetDescription(const_cast<LPOLESTR>(wideDescription.c_str()));
        IErrorInfo* info = nullptr;
        if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
            SetErrorInfo(0, info);
            info->Release();
        }
        create->Release();
    }
    return StatusOf(number);
}

HRESULT ReportCurrentException(REFIID iid) {
    try {
        throw;
    } catch (const Error& error) {
        return RaiseError(iid, error.Number(), error.Source(), error.Description());
    } catch (const std::bad_alloc&) {
        return RaiseError(iid, static_cast<long>(E_OUTOFMEMORY), "Quillbank", "Out of memory.");
    } catch (const std::exception& error) {
        return RaiseError(iid, static_cast<long>(E_FAIL), "Quillbank", error.what());
    } catch (...) {
        return RaiseError(iid, static_cast<long>(E_FAIL), "Quillbank", "Unexpected failure.");
    }
}

}  // namespace quillbank::com
