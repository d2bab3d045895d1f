// Prints what a DLL registers, for the installer:
//
//   registry_rows component tlpacscfg.idl win64|win32
//   registry_rows client
//
// One value a line: names or server, key below HKEY_CLASSES_ROOT, name, value; tabs between them.
// "names" are those that the 32-bit and the 64-bit DLL share. {file} and {folder} in a value stand
// for the path of the DLL and its folder.

#include <cctype>
#include <fstream>
#include <iostream>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "automation/registration_entries.h"
#include "client/identity.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

/// A library, class or interface of the IDL.
struct Declaration {
  std::string attributes;
  std::string kind;
  std::wstring name;
  std::wstring id;
};

std::wstring guidText(std::string digits) {
  for (char& digit : digits) digit = static_cast<char>(std::toupper(digit));
  return L"{" + fromUtf8(digits) + L"}";
}

std::vector<Declaration> declarationsOf(const std::string& idl) {
  static const std::regex pattern(
      R"(\[([^\[\]]*uuid\(([0-9a-f-]{36})\)[^\[\]]*)\]\s*(library|dispinterface|coclass)\s+(\w+))");
  std::vector<Declaration> found;
  for (std::sregex_iterator it(idl.begin(), idl.end(), pattern), end; it != end; ++it) {
    found.push_back({(*it)[1], (*it)[3], fromUtf8((*it)[4].str()), guidText((*it)[2])});
  }
  if (found.empty() || found[0].kind != "library")
    throw std::runtime_error("no library in the IDL");
  return found;
}

void print(const char* group, const std::vector<RegistryEntry>& entries) {
  for (const auto& [key, name, value] : entries) {
    std::cout << group << '\t' << toUtf8(key) << '\t' << toUtf8(name) << '\t' << toUtf8(value)
              << '\n';
  }
}

void print(const RegisteredClass& type) {
  print("names", nameEntries(type));
  print("server", serverEntries(type, L"{file}"));
}

/// What the system writes when a DLL registers its type library.
void printLibrary(const Declaration& library, const std::wstring& platform) {
  std::smatch title;
  std::regex_search(library.attributes, title, std::regex(R"re(helpstring\("([^"]*)"\))re"));
  const std::wstring key = L"TypeLib\\" + library.id + L"\\1.0";
  // FLAGS: the library has a file (LIBFLAG_FHASDISKIMAGE).
  print("names", {{key, L"", fromUtf8(title[1].str())},
                  {key + L"\\FLAGS", L"", L"8"},
                  {key + L"\\HELPDIR", L"", L"{folder}"}});
  print("server", {{key + L"\\0\\" + platform, L"", L"{file}"}});
}

void printInterface(const Declaration& interface, const Declaration& library) {
  // The system's own marshaler for IDispatch.
  const wchar_t* const marshaler = L"{00020420-0000-0000-C000-000000000046}";
  const std::wstring key = L"Interface\\" + interface.id;
  print("names", {{key, L"", interface.name},
                  {key + L"\\ProxyStubClsid", L"", marshaler},
                  {key + L"\\ProxyStubClsid32", L"", marshaler},
                  {key + L"\\TypeLib", L"", library.id},
                  {key + L"\\TypeLib", L"Version", L"1.0"}});
}

void printComponent(const std::string& idl, const std::wstring& platform) {
  const std::vector<Declaration> declarations = declarationsOf(idl);
  const Declaration& library = declarations[0];
  printLibrary(library, platform);
  for (const Declaration& declaration : declarations) {
    if (declaration.kind == "dispinterface") printInterface(declaration, library);
    const bool creatable = declaration.attributes.find("noncreatable") == std::string::npos;
    if (declaration.kind == "coclass" && creatable) {
      print({declaration.id, library.name + L"." + declaration.name, library.id});
    }
  }
}

int run(const std::vector<std::string>& arguments) {
  if (arguments.size() == 3 && arguments[0] == "component") {
    std::ifstream file(arguments[1]);
    printComponent({std::istreambuf_iterator<char>(file), {}}, fromUtf8(arguments[2]));
  } else if (arguments == std::vector<std::string>{"client"}) {
    print({client::kClassId, client::kProgId, {}});
  } else {
    throw std::runtime_error("component IDL win64|win32, or client");
  }
  return 0;
}

}  // namespace
}  // namespace tlpacscfg

int main(int count, char** arguments) {
  try {
    return tlpacscfg::run({arguments + 1, arguments + count});
  } catch (const std::exception& error) {
    std::cerr << "registry_rows: " << error.what() << '\n';
    return 1;
  }
}
