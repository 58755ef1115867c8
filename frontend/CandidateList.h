#pragma once

// The candidates of one request: those that fit what was typed, in their order, details for the first ones only.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/Completion.h"
#include "frontend/RequestContext.h"

namespace frontend {

class CandidateList {
 public:
  /// Fills in what is expensive to know.
  using Details = std::function<void(Candidate&)>;

  /// Describes candidates that are listed by their names only.
  class Source {
   public:
    virtual ~Source() = default;
    /// `at`: what the source itself has called it.
    virtual void describe(std::size_t at, Candidate& candidate) = 0;
  };

  /// A candidate of which nothing is made until it is shown.
  struct Listed {
    /// Stays where it is until the list is finished.
    std::u16string_view label;
    Kind kind;
    bool isHidden;
    std::size_t order;
    Source* source;
    std::size_t at;
  };

  /// Where what is offered is written: names have to be names of code, members can be written otherwise, too, and a text
  /// holds everything.
  enum class Place { Name, Member, Text };

  CandidateList(const RequestContext& request, std::u16string typed, Place place = Place::Name);

  const std::u16string& typed() const noexcept { return typed_; }
  /// Hidden names are included like others; otherwise one comes only when it is typed in full.
  bool includesHidden() const noexcept { return hidden_; }

  /// The candidate's label, kind, order and whether it is hidden are set. One that does not fit is left out, and so is a
  /// hidden one that is not included, and a name that no code can write. Stops when the request has been asked to stop.
  void add(Candidate candidate, Details details = {});
  void add(const Listed& listed);

  /// All of the same kind, the alphabet decides.
  void addNames(const std::vector<std::u16string>& names, Kind kind);
  /// All of the same kind, in their order, counted from `order`.
  void addInOrder(const std::vector<std::u16string>& names, Kind kind, const Details& details = {},
                  std::size_t order = 0);

  /// Keeps what details refer to.
  template <class Kept>
  Kept* keep(std::shared_ptr<Kept> kept) {
    kept_.push_back(kept);
    return kept.get();
  }

  /// The first candidates in their order, each label once; details as long as the request may go on.
  void finish(const Extent& extent, Completion& completion);

 private:
  struct Entry {
    Candidate candidate;
    Details details;
  };

  /// What an entry is ranked by, and where it is.
  struct Key {
    /// Match, then not hidden before hidden, then kind.
    std::uint32_t rank;
    std::uint32_t at;
    std::size_t order;
    std::u16string_view label;
    /// Null where `at` is an entry of this list.
    Source* source;
  };

  static bool isBefore(const Key& left, const Key& right);

  /// Notes the entry if it fits.
  bool addKey(const Listed& listed);
  /// Can code write the name?
  bool isWritable(Kind kind, std::u16string_view label) const;
  /// Sees to it that what is inserted is code.
  void completeInsertion(Candidate& candidate) const;
  /// Each label once, where it ranks first.
  void dropRepeated();
  Candidate candidateOf(const Key& key);

  const RequestContext& request_;
  const std::u16string typed_;
  const Place place_;
  const bool hidden_;
  std::vector<Key> keys_;
  std::vector<Entry> entries_;
  std::vector<std::shared_ptr<void>> kept_;
};

}  // namespace frontend
