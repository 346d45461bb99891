// The day's income and expenses, and the rates that the player sets.
#pragma once

#include "sim/city.h"

void updateFinance(City& city);

// A step is 10 percent; rates stay within 20 to 200, budgets within 50 to 150. An index out of range does
// nothing.
void adjustTax(City& city, int index, int steps);
void adjustBudget(City& city, int index, int steps);

// Districts 1 to 8; any other number does nothing.
void cycleDistrictTax(City& city, int district);
void toggleDistrictPolicy(City& city, int district, int bit);

// Appends one day to the charts, which hold the last HISTORY_LENGTH days.
void pushHistory(City& city, double income, double expenses, int population, float happiness);
