#include "platform/registry_file.h"

#include <algorithm>
#include <unordered_map>

#include "base/text.h"

namespace cvl {

namespace {

constexpr std::string_view Heading = "Windows Registry Editor Version 5.00";
constexpr std::string_view HeadComment =
    "; The settings of Chronvale Server. Change them while it is stopped: a running server\n"
    "; keeps its settings in memory and overwrites those of this file when it stops.\n"
    "; Comments, blank lines, other keys and other values stay as they are.\n";

std::string Folded(std::string_view text) {
  std::string folded(text);
  for (char &c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return folded;
}

bool EndsLine(std::string_view text) {
  return text.ends_with('\n');
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// The piece that TEXT makes; nothing if it doesn't read back as one by the name of NAME.
std::optional<RegistryEntry> EntryOf(const std::string &text, const std::string &name) {
  std::size_t at = 0;
  RegistryEntry entry;
  if (text.find('\0') != std::string::npos || !ReadRegistryEntry(text, at, entry) ||
      at != text.size() || entry.Name != name) {
    return std::nullopt;
  }
  return entry;
}

/// Walks over ENTRIES and calls VISIT with each value, deleted or not, of the key of PATH.
template <class Entries, class Visit>
void ForEachValue(Entries &entries, std::string_view path, Visit &&visit) {
  const std::string wanted = Folded(Utf8Of(path));
  bool inside = false;
  for (auto &entry : entries) {
    if (entry.What == RegistryEntry::Kind::Key) {
      inside = Folded(entry.Name) == wanted;
    } else if (inside && entry.What != RegistryEntry::Kind::Other) {
      visit(entry);
    }
  }
}

}  // namespace

RegistryFile::RegistryFile() : Encoding_(RegistryEncoding::Utf8) {
  std::size_t at = 0;
  static_cast<void>(Read(Joined({Heading, "\n\n", HeadComment}), at));
}

std::optional<RegistryFile> RegistryFile::Parse(std::string_view bytes, std::size_t *bad_line) {
  const std::optional<RegistryText> text = DecodeRegistry(bytes);
  std::size_t at = 0;
  if (text) {
    RegistryFile file(text->Encoding);
    if (file.Read(text->Utf8, at)) return file;
  }
  if (bad_line != nullptr) {
    const auto front = text ? std::string_view(text->Utf8).substr(0, at) : std::string_view();
    *bad_line = 1 + static_cast<std::size_t>(std::count(front.begin(), front.end(), '\n'));
  }
  return std::nullopt;
}

/// Takes TEXT apart. False at the first piece that makes no sense; AT then stands before it.
bool RegistryFile::Read(std::string_view text, std::size_t &at) {
  const std::size_t zero = text.find('\0');
  bool headed = false;
  bool in_key = false;
  while (at < text.size()) {
    RegistryEntry entry;
    std::size_t behind = at;
    if (!headed && text.substr(at).starts_with(Heading)) {
      behind += Heading.size();
      headed = ReadRegistryEntry(text, behind, entry) && entry.What == RegistryEntry::Kind::Other;
      if (!headed) return false;
      entry.Text.insert(0, Heading);
    } else if (!ReadRegistryEntry(text, behind, entry)) {
      return false;
    }
    in_key = in_key || entry.What == RegistryEntry::Kind::Key;
    const bool is_other = entry.What == RegistryEntry::Kind::Other;
    if ((!is_other && (!headed || !in_key)) || behind > zero) return false;
    at = behind;
    Entries_.push_back(std::move(entry));
  }
  const std::size_t first_end = text.find('\n');
  const bool has_returns = first_end == std::string_view::npos
                               ? Encoding_ == RegistryEncoding::Utf16
                               : first_end > 0 && text[first_end - 1] == '\r';
  LineEnd_ = has_returns ? "\r\n" : "\n";
  return headed;
}

std::string RegistryFile::Bytes() const {
  RegistryText text{{}, Encoding_};
  for (const RegistryEntry &entry : Entries_) {
    text.Utf8 += entry.Text;
  }
  return EncodeRegistry(text);
}

bool RegistryFile::HasKey(std::string_view path) const {
  const std::string wanted = Folded(Utf8Of(path));
  return std::any_of(Entries_.begin(), Entries_.end(), [&](const RegistryEntry &entry) {
    if (entry.What != RegistryEntry::Kind::Key) return false;
    const std::string found = Folded(entry.Name);
    return found.starts_with(wanted) &&
           (found.size() == wanted.size() || found[wanted.size()] == '\\');
  });
}

std::vector<RegistryValue> RegistryFile::Values(std::string_view path) const {
  // A later value of the same name counts, in the place of the first and by the name that it
  // has there. Deleting a value forgets its place; a later one of that name is at the end.
  struct Place {
    const RegistryEntry *First;
    const RegistryEntry *Last;
  };
  std::vector<Place> places;
  std::unordered_map<std::string, std::size_t> known;
  ForEachValue(Entries_, path, [&](const RegistryEntry &entry) {
    const auto [place, is_new] = known.try_emplace(Folded(entry.Name), places.size());
    if (entry.What == RegistryEntry::Kind::Deleted) {
      if (!is_new) places[place->second].Last = nullptr;
      known.erase(place);
    } else if (is_new) {
      places.push_back({&entry, &entry});
    } else {
      places[place->second].Last = &entry;
    }
  });
  std::vector<RegistryValue> values;
  for (const Place &place : places) {
    if (place.Last != nullptr) values.push_back({Latin1Of(place.First->Name), place.Last->Data});
  }
  return values;
}

RegistryFile::Change RegistryFile::AddKey(std::string_view path) {
  return HasKey(path) ? Change::None : AppendKey(path);
}

RegistryFile::Change RegistryFile::AppendKey(std::string_view path) {
  std::optional<RegistryEntry> key =
      EntryOf(Joined({"[", Utf8Of(path), "]", LineEnd_}), Utf8Of(path));
  if (!key) return Change::Refused;
  EndLine(Entries_.back());
  if (!IsBlank(Entries_.back().Text)) Entries_.push_back(*EntryOf(std::string(LineEnd_), {}));
  Entries_.push_back(*std::move(key));
  return Change::Made;
}

RegistryFile::Change RegistryFile::SetString(std::string_view path, std::string_view name,
                                             std::string_view text) {
  const std::string wanted = Folded(Utf8Of(name));
  RegistryEntry *old = nullptr;
  ForEachValue(Entries_, path, [&](RegistryEntry &entry) {
    if (Folded(entry.Name) == wanted) old = &entry;
  });
  return old != nullptr ? Replace(*old, text) : Insert(path, name, text);
}

RegistryFile::Change RegistryFile::Replace(RegistryEntry &entry, std::string_view text) {
  if (entry.IsText && entry.Data == Joined({text, std::string_view("\0", 1)})) return Change::None;
  std::string line = entry.Text;
  line.replace(entry.DataAt, entry.DataLength, RegistryDataText(text));
  std::optional<RegistryEntry> changed = EntryOf(line, entry.Name);
  if (!changed) return Change::Refused;
  entry = *std::move(changed);
  return Change::Made;
}

RegistryFile::Change RegistryFile::Insert(std::string_view path, std::string_view name,
                                          std::string_view text) {
  std::optional<RegistryEntry> value = EntryOf(
      Joined({RegistryNameText(name), "=", RegistryDataText(text), LineEnd_}), Utf8Of(name));
  if (!value) return Change::Refused;
  std::size_t place = PlaceBehind(path);
  if (place == 0) {
    if (AppendKey(path) == Change::Refused) return Change::Refused;
    place = Entries_.size();
  }
  EndLine(Entries_[place - 1]);
  Entries_.insert(Entries_.begin() + static_cast<std::ptrdiff_t>(place), *std::move(value));
  return Change::Made;
}

/// The place behind the last value of a key, or behind its heading; 0 if it has none.
std::size_t RegistryFile::PlaceBehind(std::string_view path) const {
  const std::string wanted = Folded(Utf8Of(path));
  std::size_t place = 0;
  bool inside = false;
  for (std::size_t at = 0; at < Entries_.size(); ++at) {
    const RegistryEntry &entry = Entries_[at];
    if (entry.What == RegistryEntry::Kind::Key) inside = Folded(entry.Name) == wanted;
    if (inside && entry.What != RegistryEntry::Kind::Other) place = at + 1;
  }
  return place;
}

/// The last line of a file may lack its end.
void RegistryFile::EndLine(RegistryEntry &entry) {
  if (!EndsLine(entry.Text)) entry.Text += LineEnd_;
}

}  // namespace cvl
