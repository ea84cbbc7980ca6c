# What a newcomer types. The real build is CMake + Ninja in build/.
BUILD       ?= build
BENCH_BUILD ?= build-bench
SAN_BUILD   ?= build-sanitize
TSAN_BUILD  ?= build-sanitize-thread
FUZZ_BUILD  ?= build-fuzz
FUZZ_SECONDS ?= 30
JOBS        ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_FLAGS ?=
PREFIX      ?= /usr/local

.PHONY: all deps configure build test demo regen bench clean install sanitize sanitize-thread fuzz fuzz-smoke

all: build

deps:
	@sh tools/ensure_deps.sh

configure: deps
	@test -f $(BUILD)/build.ninja || cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

demo: build
	sh tools/cli/demo.sh $(BUILD)/tools/cli/varnice
	sh hosts/sqlite/demo.sh $(BUILD)

install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

regen:
	python3 tools/gen/regen.py

bench: deps
	@sh tools/ensure_deps.sh bench
	@test -f $(BENCH_BUILD)/build.ninja || cmake -S . -B $(BENCH_BUILD) -G Ninja \
	  -DCMAKE_BUILD_TYPE=Release -DVARNICE_BUILD_TESTS=OFF -DVARNICE_BUILD_BENCH=ON
	cmake --build $(BENCH_BUILD) -j $(JOBS)
	$(BENCH_BUILD)/bench/varnice_bench
	$(BENCH_BUILD)/bench/varnice_peer_table
	python3 bench/cli_bench.py $(BENCH_BUILD)/tools/cli/varnice
	python3 bench/sqlite_bench.py $(BENCH_BUILD)/hosts/sqlite/varnice.so

# The whole suite under AddressSanitizer and UndefinedBehaviorSanitizer; one
# test allocates more than exists on purpose, hence allocator_may_return_null.
# Left out: the install and SQLite tests, which load the library into programs
# built without the sanitizers (consumers, the sqlite3 shell), and the export
# check, whose subject is the normal build (instrumented code exports extra
# markers and inline library functions).
sanitize: deps
	@test -f $(SAN_BUILD)/build.ninja || cmake -S . -B $(SAN_BUILD) -G Ninja $(CMAKE_FLAGS) \
	  -DCMAKE_BUILD_TYPE=Debug -DVARNICE_SANITIZE=address,undefined
	cmake --build $(SAN_BUILD) -j $(JOBS)
	cd $(SAN_BUILD) && ASAN_OPTIONS=allocator_may_return_null=1:detect_leaks=1 \
	  UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j $(JOBS) -E '^(install|hosts)[.]|^build[.]exported_symbols$$'

# Registration, then several threads converting, under ThreadSanitizer.
sanitize-thread: deps
	@test -f $(TSAN_BUILD)/build.ninja || cmake -S . -B $(TSAN_BUILD) -G Ninja $(CMAKE_FLAGS) \
	  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVARNICE_SANITIZE=thread
	cmake --build $(TSAN_BUILD) -j $(JOBS) --target varnice_tests
	TSAN_OPTIONS=halt_on_error=1 $(TSAN_BUILD)/tests/varnice_tests --gtest_filter='Concurrency.*'

# libFuzzer targets under ASan and UBSan (needs clang); fuzz-smoke runs each
# for FUZZ_SECONDS from its seed corpus in fuzz/corpus.
fuzz: deps
	@test -f $(FUZZ_BUILD)/build.ninja || CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -G Ninja $(CMAKE_FLAGS) \
	  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVARNICE_BUILD_TESTS=OFF -DVARNICE_FUZZ=ON \
	  -DVARNICE_SANITIZE=address,undefined
	cmake --build $(FUZZ_BUILD) -j $(JOBS)

fuzz-smoke: fuzz
	sh fuzz/run.sh $(FUZZ_BUILD)/fuzz $(FUZZ_SECONDS)

clean:
	rm -rf $(BUILD) $(BENCH_BUILD) $(SAN_BUILD) $(TSAN_BUILD) $(FUZZ_BUILD)
