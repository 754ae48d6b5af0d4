#include "tools/qlutil/bad_document.h"

#include "json/diagnosis.h"

std::wstring DescribeBadDocument(std::wstring_view file, std::wstring_view text) {
    const auto fault = JSON::Diagnose(text);
    std::wstring message = std::wstring(file) + L" is not a JSON document";
    if (!fault) return message;
    return message + L": line " + std::to_wstring(fault->line) + L", column " +
           std::to_wstring(fault->column) + L": expected " + std::wstring(fault->expected) + L", found " +
           std::wstring(fault->found);
}
