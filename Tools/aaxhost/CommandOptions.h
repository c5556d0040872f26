#pragma once
#include "Tools/aaxhost/host/CHostAutomation.h"

#include <CLI/CLI.hpp>

/** The forms of arguments that several commands take. */

/** Takes finite decimal numbers from inLowest to inHighest. */
CLI::Validator NumberFrom(double inLowest, double inHighest);
/** Takes whole numbers from inLowest to inHighest. */
CLI::Validator WholeNumberFrom(int inLowest, int inHighest);

/** Takes texts with something on both sides of an `=`. */
CLI::Validator Assignment();

/** `--answers at-once|late|last`. */
void AddAnswersOption(CLI::App& ioCommand, EAnswers& outAnswers);
