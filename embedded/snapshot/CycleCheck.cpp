#include <algorithm>

#include "embedded/snapshot/Checks.h"

namespace embedded::snapshot {

namespace {

/// Follows superclasses in depth, with a stack of its own: chains may be as long as the snapshot.
class CycleSearch {
 public:
  explicit CycleSearch(const CheckContext& context)
      : context_(context), states_(context.superclasses.size(), State::New) {}

  void run() {
    for (std::size_t start = 0; start < states_.size(); ++start) {
      if (states_[start] == State::New) enter(start);
      while (!trail_.empty()) step();
    }
  }

 private:
  enum class State : unsigned char { New, Open, Done };
  struct Step {
    std::size_t index;
    std::size_t nextSuperclass = 0;
  };

  void enter(std::size_t index) {
    states_[index] = State::Open;
    trail_.push_back({index});
  }

  void step() {
    Step& step = trail_.back();
    const auto& superclasses = context_.superclasses[step.index];
    if (step.nextSuperclass == superclasses.size()) {
      states_[step.index] = State::Done;
      trail_.pop_back();
      return;
    }
    const std::size_t superclass = superclasses[step.nextSuperclass++];
    if (states_[superclass] == State::Open) refuse(superclass);
    if (states_[superclass] == State::New) enter(superclass);
  }

  [[noreturn]] void refuse(std::size_t repeated) const {
    const Place root;
    const Place classes(root, "classes");
    const Place last(classes, trail_.back().index);
    const Place superclasses(last, "superclasses");
    const Place culprit(superclasses, trail_.back().nextSuperclass - 1);
    context_.fail("snapshot.superclass-cycle", culprit,
                  "a class is its own superclass: " + cycleTo(repeated));
  }

  /// a -> b -> a; the middle of a long one is left out.
  std::string cycleTo(std::size_t repeated) const {
    constexpr std::ptrdiff_t mostNames = 10;
    const auto start =
        std::find_if(trail_.begin(), trail_.end(), [&](const Step& step) { return step.index == repeated; });
    const auto length = trail_.end() - start;
    std::string names;
    for (auto step = start; step != trail_.begin() + (start - trail_.begin()) + std::min(length, mostNames);
         ++step)
      names += nameOf(step->index) + " -> ";
    if (length > mostNames) names += "(" + std::to_string(length - mostNames) + " more) -> ";
    return names + nameOf(repeated);
  }

  std::string nameOf(std::size_t index) const {
    const ClassDescription& described = context_.description.classes[index];
    return identityOf(described.component, described.name);
  }

  const CheckContext& context_;
  std::vector<State> states_;
  std::vector<Step> trail_;
};

}  // namespace

void checkSuperclassCycles(const CheckContext& context) { CycleSearch(context).run(); }

}  // namespace embedded::snapshot
