import { defineConfig } from "vite";

export default defineConfig({
    // All addresses are relative, so that the page works under a path.
    base: "./",
    esbuild: { jsx: "automatic", jsxImportSource: "preact" },
    build: {
        target: "es2022",
        // The server forbids inline scripts and styles.
        modulePreload: { polyfill: false },
        assetsInlineLimit: 0,
    },
    // For `npx vite`, which serves the sources: run the journal beside it with auth = "none".
    server: {
        proxy: {
            "/api": {
                target: "http://127.0.0.1:8080",
                changeOrigin: true,
                // The journal refuses cross-origin requests, and this page has another origin.
                configure: (proxy) => proxy.on("proxyReq", (request) => request.removeHeader("origin")),
            },
        },
    },
});
