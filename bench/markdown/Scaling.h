#pragma once

/// Prints for each family of inputs the times from 64 kB to 4 MB and the largest ratio of the time for twice
/// the size.
void printScaling();
/// The same for the mixtures of every two families, in turn and one behind the other: the worst of them
/// alone.
void printScalingOfPairs();
