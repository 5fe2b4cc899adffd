#pragma once
#include <cstddef>
#include <functional>

/// Over the substitute, a wait for datagrams takes no real time once `answered` says that all is sent that
/// will be sent in answer to so many datagrams of the program's; null ends that. On Windows silence takes its
/// time.
void skip_silence(std::function<bool(std::size_t sent)> answered);
