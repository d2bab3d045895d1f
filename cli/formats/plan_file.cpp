#include "cli/formats/plan_file.h"

#include <nlohmann/json.hpp>

#include "cli/base/failure.h"
#include "cli/formats/files.h"
#include "cli/formats/output.h"
#include "config/columns.h"
#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg::cli {
namespace {

using nlohmann::ordered_json;

constexpr const char* kPlanKind = "plan";

ordered_json jsonOf(const std::optional<std::wstring>& text) {
  return text ? ordered_json(toUtf8(*text)) : ordered_json(nullptr);
}

std::optional<std::wstring> textIn(const ordered_json& json) {
  if (json.is_null()) return std::nullopt;
  return fromUtf8(json.get<std::string>());
}

std::int16_t numberIn(const ordered_json& json) { return toInt16(json.get<std::int64_t>()); }

ordered_json jsonOf(const Site::Configuration& record) {
  if (!record) return nullptr;
  ordered_json json = ordered_json::object();
  for (const Column& column : columns()) {
    const FieldValue value = valueOf(*record, column.field);
    ordered_json& member = json[toUtf8(column.property)];
    if (const auto* text = std::get_if<std::wstring>(&value)) member = toUtf8(*text);
    if (const auto* number = std::get_if<std::int16_t>(&value)) member = *number;
    if (const auto* number = std::get_if<std::int32_t>(&value)) member = *number;
  }
  return json;
}

Site::Configuration recordIn(const ordered_json& json) {
  if (json.is_null()) return nullptr;
  const auto record = std::make_shared<clsPACSConfiguration>();
  for (const Column& column : columns()) {
    const ordered_json& member = json.at(toUtf8(column.property));
    FieldValue value = valueOf(*record, column.field);
    if (std::holds_alternative<std::wstring>(value)) {
      value = fromUtf8(member.get<std::string>());
    } else if (std::holds_alternative<std::int16_t>(value)) {
      value = numberIn(member);
    } else {
      value = toInt32(static_cast<double>(member.get<std::int64_t>()));
    }
    setValue(*record, column.field, std::move(value));
  }
  record->MarkAsLoaded();
  return record;
}

/// The whole of a change must be about one row.
void requireOneRow(const ConfigurationChange& change) {
  const bool none = !change.before && !change.after;
  const bool two =
      change.before && change.after && change.before->configID != change.after->configID;
  if (none || two) raise(ErrorNumber::InvalidProcedureCall);
}

}  // namespace

ordered_json planJson(const Plan& plan) {
  ordered_json json = {{"configurations", ordered_json::array()},
                       {"assignments", ordered_json::array()},
                       {"restsOn", ordered_json::array()}};
  for (const ConfigurationChange& change : plan.configurations) {
    ordered_json item = {{"configID", change.configID()},
                         {"digest", change.before ? toUtf8(digestOf(*change.before)) : ""},
                         {"before", jsonOf(change.before)},
                         {"after", jsonOf(change.after)},
                         {"assignedWithoutRow", ordered_json::array()}};
    for (const std::wstring& name : change.assignedWithoutRow) {
      item["assignedWithoutRow"].push_back(toUtf8(name));
    }
    json["configurations"].push_back(std::move(item));
  }
  for (const AssignmentChange& change : plan.assignments) {
    json["assignments"].push_back({{"workstation", toUtf8(change.workstation)},
                                   {"before", jsonOf(change.before)},
                                   {"after", jsonOf(change.after)}});
  }
  for (const UnchangedRow& row : plan.restsOn) {
    json["restsOn"].push_back({{"configID", row.configID}, {"digest", toUtf8(row.digest)}});
  }
  return json;
}

Plan planOf(const ordered_json& json) {
  Plan plan;
  for (const ordered_json& item : json.at("configurations")) {
    ConfigurationChange change{recordIn(item.at("before")), recordIn(item.at("after")), {}};
    requireOneRow(change);
    for (const ordered_json& name : item.at("assignedWithoutRow")) {
      change.assignedWithoutRow.push_back(fromUtf8(name.get<std::string>()));
    }
    plan.configurations.push_back(std::move(change));
  }
  for (const ordered_json& item : json.at("assignments")) {
    plan.assignments.push_back({fromUtf8(item.at("workstation").get<std::string>()),
                                textIn(item.at("before")), textIn(item.at("after"))});
  }
  for (const ordered_json& item : json.at("restsOn")) {
    plan.restsOn.push_back(
        {numberIn(item.at("configID")), fromUtf8(item.at("digest").get<std::string>())});
  }
  return plan;
}

bool changeTheSame(const Plan& first, const Plan& second) {
  const auto one = planJson(first), other = planJson(second);
  return one.at("configurations") == other.at("configurations") &&
         one.at("assignments") == other.at("assignments");
}

std::string planDocument(const PlanFile& file) {
  ordered_json json = {{"schema", schemaOf(kPlanKind)}, {"undoes", file.undoes}};
  json.update(planJson(file.plan));
  json["statements"] = ordered_json::array();
  for (const std::wstring& statement : statementsOf(file.plan)) {
    json["statements"].push_back(toUtf8(statement));
  }
  return json.dump(2) + "\n";
}

PlanFile readPlanFile(const std::string& file) {
  const std::string content = readFile(file);
  const auto notAPlan = [&](const std::string& reason) {
    return Failure(ExitCode::Usage, "The file '" + file + "' is not a plan: " + reason);
  };
  try {
    const ordered_json json = ordered_json::parse(content);
    if (json.at("schema") != schemaOf(kPlanKind)) throw notAPlan("its schema is another one.");
    return {.plan = planOf(json), .undoes = json.value("undoes", 0)};
  } catch (const ordered_json::exception& error) {
    throw notAPlan(error.what());
  } catch (const RunTimeError& error) {
    throw notAPlan(toUtf8(error.description()));
  }
}

}  // namespace tlpacscfg::cli
