#pragma once

#include <cstdint>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// How many invoices a new store holds; their UIDs run from "INV-1001" on.
inline constexpr std::int64_t kSeededInvoices = 40;

/// Fills an empty database with customers, a catalogue of building products and invoices. The same
/// seed makes the same data on every machine.
void fill_invoices(Database& database, std::uint64_t seed);

/// Gives each invoice its number at the manufacturer, its partner and its pay period, which follow
/// from what else it says.
void complete_invoices(Database& database);

}  // namespace bvconn::sandbox
