#pragma once

#include <thread>
#include <vector>

// Does the work on so many threads, each with its number, and waits for all.
template <class Work>
void OnThreads(int count, Work work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) threads.emplace_back(work, i);
    for (std::thread& thread : threads) thread.join();
}
