#include "library/bank_name.h"

#include "library/bank_file.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"
#include "platform/text/odd_bytes.h"

namespace zephyra {

std::optional<std::string> bankNameOf(std::string_view fileName) {
    if (extensionOf(fileName) != kBankExtension) return std::nullopt;
    return typedFromBytes(fileName);
}

std::string bankFileName(std::string_view name) {
    return bytesFromTyped(name);
}

bool isBankName(std::string_view name) {
    const std::string file = bankFileName(name);
    const bool isEntry = file.size() <= kMostFileNameBytes && file.find('/') == file.npos &&
                         file.find('\0') == file.npos;
    return isEntry && bankNameOf(file) == name;
}

bool isNewBankName(std::string_view name) {
    return isBankName(name) && isFileNameWithoutExtension(bankFileName(name));
}

} // namespace zephyra
