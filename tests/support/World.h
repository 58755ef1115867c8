#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "embedded/Host.h"
#include "host/Names.h"

/// A host from the text of a snapshot, active on this thread for as long as it lives.
struct World {
  explicit World(std::string_view snapshot) : World(embedded::readSnapshotText(snapshot, "world")) {}
  explicit World(const embedded::Description& description) : host(description) {}

  /// The host operations that `ask` calls, in their order: the last parts of their names, separated by blanks.
  std::string asked(const std::function<void()>& ask);

  embedded::Host host;
  embedded::Activation active{host};
};

/// A file of the source folder, by its path from there.
std::string sourceFile(const std::string& path);

/// The bytes of a file.
std::string contentsOf(const std::filesystem::path& file);

/// What a snapshot in the source folder describes.
embedded::Description worldFile(const std::string& path);

/// The text of an identifier, and "null" for the null one.
std::string textOf(const kcos::COSInternedName& id);

/// What `ask` throws, as text; empty when it throws nothing.
std::string thrownBy(const std::function<void()>& ask);
