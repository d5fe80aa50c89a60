import { defineConfig } from "vite";

export default defineConfig({
    esbuild: { jsx: "automatic", jsxImportSource: "preact" },
    build: {
        target: "es2022",
        // The server forbids scripts and styles inside the page; both stay files of their own.
        modulePreload: { polyfill: false },
        assetsInlineLimit: 0,
    },
    // For `npx vite`, which serves the sources themselves: the journal has to run beside it with auth = "none".
    server: {
        proxy: {
            "/api": {
                target: "http://127.0.0.1:8080",
                changeOrigin: true,
                // The journal refuses pages of other origins, and that is what this one is to it.
                configure: (proxy) => proxy.on("proxyReq", (request) => request.removeHeader("origin")),
            },
        },
    },
});
