import { render } from "preact";
import { App } from "./frame/App";
import { lineState } from "./state/app";
import "./style/colours.css";
import "./style/frame.css";
import "./style/controls.css";
import "./style/list.css";
import "./style/details.css";
import "./style/views.css";

const place = document.getElementById("page");
if (place) {
    render(<App />, place);
    lineState.start();
}
