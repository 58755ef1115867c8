#include "embedded/language/Convert.h"
#include "embedded/language/Display.h"
#include "embedded/language/Evaluator.h"
#include "embedded/model/Unicode.h"

namespace embedded {

Evaluator::Exit Evaluator::run(const Block& block) {
  const CodeLevel level(interpreter_);
  for (const Statement& statement : block)
    if (const Exit exit = run(statement); exit != Exit::AtEnd) return exit;
  return Exit::AtEnd;
}

Evaluator::Exit Evaluator::run(const Statement& statement) {
  interpreter_.at = statement.at;
  interpreter_.step();
  if (const auto* branches = std::get_if<If>(&statement.form)) return run(*branches);
  if (const auto* loop = std::get_if<While>(&statement.form)) return run(*loop);
  if (const auto* loop = std::get_if<For>(&statement.form)) return run(*loop);
  if (std::holds_alternative<Break>(statement.form)) return Exit::Break;
  if (std::holds_alternative<Continue>(statement.form)) return Exit::Continue;
  if (std::holds_alternative<Return>(statement.form)) return Exit::Return;
  if (const auto* assignment = std::get_if<Assignment>(&statement.form))
    run(*assignment, statement.prints);
  else
    run(std::get<ExpressionStatement>(statement.form), statement.prints);
  return Exit::AtEnd;
}

bool Evaluator::condition(const Expression& expression) {
  const ValuePtr result = value(expression);
  interpreter_.at = expression.at;
  return isTrue(*result);
}

Evaluator::Exit Evaluator::run(const If& statement) {
  for (const Branch& branch : statement.branches)
    if (branch.condition == nullptr || condition(*branch.condition)) return run(branch.block);
  return Exit::AtEnd;
}

Evaluator::Exit Evaluator::run(const While& statement) {
  while (condition(*statement.condition)) {
    interpreter_.step();
    const Exit exit = run(statement.block);
    if (exit == Exit::Break) break;
    if (exit == Exit::Return) return exit;
  }
  return Exit::AtEnd;
}

/// Over the columns of the values.
Evaluator::Exit Evaluator::run(const For& statement) {
  const ValuePtr all = value(*statement.values);
  const std::size_t columns = all->rows() == 0 ? 0 : all->columns();
  for (std::size_t column = 0; column < columns; ++column) {
    interpreter_.step();
    const Subscript every{.every = true};
    const Subscript one{.positions = {column}, .size = {1, 1}};
    variables_.set(statement.variable, indexed(*all, std::vector<Subscript>{every, one}));
    const Exit exit = run(statement.block);
    if (exit == Exit::Break) break;
    if (exit == Exit::Return) return exit;
  }
  return Exit::AtEnd;
}

Values Evaluator::valuesOf(const ExpressionStatement& statement, std::size_t wanted) {
  return values(*statement.value, wanted);
}

void Evaluator::run(const ExpressionStatement& statement, bool prints) {
  const Values all = values(*statement.value, 0);
  if (!prints) return;
  const auto* reference = std::get_if<Reference>(&statement.value->form);
  const bool isVariable =
      reference != nullptr && reference->accesses.empty() && variables_.find(reference->name) != nullptr;
  for (const ValuePtr& value : all) print(isVariable ? reference->name : std::string(), *value);
}

void Evaluator::run(const Assignment& statement, bool prints) {
  const Position at = interpreter_.at;
  Values all;
  if (statement.targets.size() == 1)
    all = {value(*statement.value)};
  else
    all = values(*statement.value, statement.targets.size());
  interpreter_.at = at;
  if (all.size() < statement.targets.size())
    failCode("KORVAL:code:NoValue", "There are " + std::to_string(statement.targets.size()) +
                                        " names to assign to, but " + std::to_string(all.size()) + " values");
  for (std::size_t index = 0; index < statement.targets.size(); ++index) {
    const auto* target = std::get_if<Reference>(&statement.targets[index]->form);
    if (target == nullptr) continue;
    assign(*target, all[index]);
    if (prints) print(target->name, *variables_.find(target->name));
  }
}

void Evaluator::print(const std::string& name, const Value& value) {
  const std::u16string prefix = name.empty() ? u"" : widened(name) + u" = ";
  write(prefix + shownValue(value) + u"\n");
}

void Evaluator::write(const std::u16string& text) {
  interpreter_.checkSize({text.size()});
  session_.streams.out.write(text);
}

}  // namespace embedded
