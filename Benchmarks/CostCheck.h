#pragma once

/// Asserts that the cost of a node does not grow with the tree. Prints a table; returns how many limits were broken.
int CheckCosts();

/// Asserts what nodes take of their forest's memory, and that replacing values does not grow it. Prints a table; returns how
/// many limits were broken.
int CheckMemory();

/// Asserts that sets are several times as fast as those of the standard library, and what an element takes of their forest's
/// memory. Prints a table; returns how many limits were broken.
int CheckSets();
