#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace imex {

// What the panel's lists offer, the code that each text stands for, and what else follows from a choice.

/// A text of a list with the code that the request is given for it.
struct Choice {
  std::string_view text;
  std::string_view code;
};

// Each kind of line items is read and handed over in a way of its own.
inline constexpr std::string_view kProjectLineItems = "Project Line Items";
inline constexpr std::string_view kQuoteLineItems = "Quote Line Items";
inline constexpr std::string_view kOrderLineItems = "Order Line Items";

// The two kinds of import: master data, sent to the service, and line items, handed to the host.
inline constexpr std::array<Choice, 5> kClientToServerTypes = {{
    {"Customers", "CUSTOMER"},
    {"Products", "PRODUCT"},
    {"Invoices", "INVOICE"},
    {"Commissions", "COMMISSION"},
    {"Ballasts", "BALLASTS"},
}};
inline constexpr std::array<Choice, 3> kClientToClientTypes = {{
    {kProjectLineItems, "PROJECTLINEITEM"},
    {kQuoteLineItems, "QUOTELINEITEM"},
    {kOrderLineItems, "ORDERLINEITEM"},
}};

inline constexpr std::array<Choice, 2> kDataOrigins = {{
    {"Halvik Format", "HALVIK"},
    {"Agent Format", "AGENT"},
}};
inline constexpr std::array<Choice, 2> kDelimiters = {{
    {"Tab", "TAB"},
    {"Pipe", "PIPE"},
}};

// Of the actions and the schedules only the first is done, so the others have no code.
inline constexpr std::array<Choice, 2> kActions = {{
    {"Import", "IMPORT"},
    {"Export", ""},
}};
inline constexpr std::array<Choice, 2> kSchedules = {{
    {"Instant", "INSTANT"},
    {"Over Night", ""},
}};

/// The code of a data type or a data origin by its text; nothing for a text that is not in the lists.
std::optional<std::string_view> dataTypeCode(std::string_view text);
std::optional<std::string_view> dataOriginCode(std::string_view text);

/// The code of a delimiter by its position in the list; nothing for another position. By position on purpose.
std::optional<std::string_view> delimiterCode(int index);

bool isClientToServerType(std::string_view text);
bool isClientToClientType(std::string_view text);

/// What the user is told who lets an import with warnings pass, by the text of the data type; empty where there is
/// nothing to tell.
std::string_view updateNotice(std::string_view dataType);

} // namespace imex
