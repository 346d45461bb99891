// How often the city's statistics have been computed since the program began.
#pragma once

int statsComputed();
