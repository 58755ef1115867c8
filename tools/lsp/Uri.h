#pragma once

#include <filesystem>
#include <string>

namespace tools::lsp {

/// The file that a "file:" URI names; empty for other URIs.
std::filesystem::path pathOf(const std::string& uri);
/// The URI of a file.
std::string uriOf(const std::filesystem::path& file);

}  // namespace tools::lsp
