#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

// A row for work on files, with what is to be done before each time and not measured, if anything: a pause
// costs as much as the shortest works here. Long enough that the first time, which finds the files out of the
// system's cache, does not decide.
inline void Register(const std::string& name, const std::function<void()>& before,
                     const std::function<void()>& work) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [=](benchmark::State& state) {
                                     for (auto _ : state) {
                                         if (before) {
                                             state.PauseTiming();
                                             before();
                                             state.ResumeTiming();
                                         }
                                         work();
                                     }
                                 })
        ->Unit(benchmark::kMillisecond)
        ->MinTime(2)
        ->UseRealTime();
}

inline void Register(const std::string& name, const std::function<void()>& work) {
    Register(name, nullptr, work);
}
