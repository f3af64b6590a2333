#pragma once

namespace StorageTest {

/// The heap of the program, which differs by system, asks this before every block that it gives: true when there is none.
bool Strikes() noexcept;

}  // namespace StorageTest
