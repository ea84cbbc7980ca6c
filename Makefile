# What a newcomer types. The real build is CMake + Ninja in build/.
BUILD       ?= build
BENCH_BUILD ?= build-bench
JOBS        ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_FLAGS ?=

.PHONY: all deps configure build test demo regen bench clean

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

clean:
	rm -rf $(BUILD) $(BENCH_BUILD)
