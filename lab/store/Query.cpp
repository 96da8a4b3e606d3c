#include "lab/store/Query.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <utility>

namespace lab {

Row::Row(std::unique_ptr<SQLite::Statement> statement) : statement_(std::move(statement)) {}

Row::~Row() = default;

std::string Row::Text(int column) const { return statement_->getColumn(column).getString(); }

std::int64_t Row::Number(int column) const { return statement_->getColumn(column).getInt64(); }

bool Row::Flag(int column) const { return statement_->getColumn(column).getInt() != 0; }

bool Row::IsNull(int column) const { return statement_->isColumnNull(column); }

std::optional<std::string> Row::OptionalText(int column) const {
  return IsNull(column) ? std::nullopt : std::optional(Text(column));
}

std::optional<std::int64_t> Row::OptionalNumber(int column) const {
  return IsNull(column) ? std::nullopt : std::optional(Number(column));
}

int Row::ColumnCount() const { return statement_->getColumnCount(); }

Query::Query(Store& store, const char* sql) : Row(store.Take(sql)), store_(store) {}

Query::~Query() { store_.Keep(std::move(statement_)); }

bool Query::Next() { return statement_->executeStep(); }

int Query::Run() { return statement_->exec(); }

std::int64_t Query::RunInsert() {
  Run();
  return store_.GetDatabase().getLastInsertRowid();
}

void Query::Bind(int place, std::int64_t number) { statement_->bind(place, number); }

void Query::Bind(int place, const std::string& text) { statement_->bind(place, text); }

void RunScript(Store& store, const std::string& sql) { store.GetDatabase().exec(sql); }

}  // namespace lab
