# Thin wrapper over CMake. `make test` is what CI runs.
JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 60
GENERATOR := $(shell command -v ninja >/dev/null 2>&1 && echo -G Ninja)
CTEST := ctest --output-on-failure -j $(JOBS)

.PHONY: deps build run test test-asan package bench fuzz format clean

deps:
	@scripts/install-deps

build: deps
	cmake -S . -B build $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build build -j $(JOBS)

# Starts the editor from build/bin, where it keeps its settings (marvek.cfg).
run:
	@if [ -z "$${DISPLAY:-}$${WAYLAND_DISPLAY:-}" ] && [ -z "$${QT_QPA_PLATFORM:-}" ]; then \
		echo "make run: the editor is a desktop program and needs a display;" >&2; \
		echo "make run: none is set (DISPLAY or WAYLAND_DISPLAY). Start it from a desktop session," >&2; \
		echo "make run: or under a virtual one: xvfb-run make run" >&2; \
		exit 1; \
	fi
	@$(MAKE) --no-print-directory build
	build/bin/marvek

test: build
	$(CTEST) --test-dir build
	$(MAKE) --no-print-directory package
	scripts/check-package build --lintian
	$(MAKE) --no-print-directory test-asan

# The Debian package, build/marvek_VERSION_ARCH.deb.
package: build
	cd build && cpack -G DEB

test-asan: deps
	cmake -S . -B build-asan $(GENERATOR) -DCMAKE_BUILD_TYPE=Debug -DMARVEK_SANITIZE=ON -DMARVEK_BENCH=OFF
	cmake --build build-asan -j $(JOBS)
	ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 $(CTEST) --test-dir build-asan

bench: deps
	cmake -S . -B build-release $(GENERATOR) -DCMAKE_BUILD_TYPE=Release -DMARVEK_TESTS=OFF
	cmake --build build-release -j $(JOBS) --target marvek-bench marvek-bench-view marvek-bench-tabs marvek-tool marvek_resources
	build-release/bin/marvek-bench --benchmark_counters_tabular=true
	build-release/bin/marvek-tool bench
	build-release/bin/marvek-bench-view
	build-release/bin/marvek-bench-tabs

fuzz: deps
	CC=clang CXX=clang++ cmake -S . -B build-fuzz $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMARVEK_FUZZ=ON
	cmake --build build-fuzz -j $(JOBS)
	scripts/run-fuzzers build-fuzz/bin $(FUZZ_SECONDS) $(FUZZ_TARGETS)

format:
	find src tests bench fuzz -name '*.cpp' -o -name '*.h' | xargs clang-format -i

clean:
	rm -rf build build-asan build-release build-fuzz
