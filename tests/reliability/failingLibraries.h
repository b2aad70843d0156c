#pragma once

namespace imex::test {

/// Lets the memory of libcurl and of pugixml fail like that of the program (allocations.h), where the blocks of
/// pugixml are counted as well. Called once, before either library is used. The libraries below libcurl keep their own.
void makeLibrariesFail();

/// The blocks of libcurl that were not given back yet, by all of its threads.
long liveBlocksOfCurl();

} // namespace imex::test
