// A function's texts laid out for people.
#pragma once

#include <string>

#include "functions/texts.h"

namespace kestran {

/// "EURO(Price, Strike, ...)".
std::string signature(const Function& function);

/// The function's example under its own name, such as "=xEURO(100,95,...)".
std::string example_formula(const Function& function);

/// Whether the function answers this result; a twin may answer fewer than its text lists.
bool answers(const Function& function, const ResultText& result);

/// What a selector's numbers mean: "0 put, 1 call, any other number: call", or "..., others refused". Empty
/// without choices. A brief one leaves out what stands behind the colon in a choice.
std::string choices(const Function& function, int argument, bool brief = false);

/// What one argument means, with its choices, brief or not, and its unit.
std::string argument_meaning(const Function& function, int argument, bool brief = false);

/// What one result means, with its unit.
std::string result_meaning(const ResultText& result);

/// The results there are to choose from, such as "0 premium, 1 delta"; empty where there is one only.
std::string result_names(const Function& function);

/// Signature, arguments, results, an example with its value and how far to trust it, in lines of plain text.
std::string description(const Function& function);

}  // namespace kestran
