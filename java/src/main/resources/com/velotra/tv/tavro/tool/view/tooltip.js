// One tooltip for the plots and the bytes. It appears for the pointer and for the keyboard focus; Escape closes it, and
// the pointer may move onto it.

const tooltip = {
    owner: null,
    timer: 0,

    show(owner, lines) {
        clearTimeout(this.timer);
        const tip = byId('tip');
        this.owner = owner;
        tip.replaceChildren(...lines.map((line, i) => el(i === 0 ? 'strong' : 'span', null, bdi(line))));
        tip.hidden = false;
        this.place();
    },

    place() {
        const tip = byId('tip');
        const box = this.owner.getBoundingClientRect();
        const {width, height} = tip.getBoundingClientRect();
        const above = box.top - height - 8;
        const left = Math.min(box.left + box.width / 2 - width / 2, document.documentElement.clientWidth - width - 4);
        tip.style.left = `${Math.max(4, left)}px`;
        tip.style.top = `${above > 4 ? above : box.bottom + 8}px`;
    },

    hide() {
        clearTimeout(this.timer);
        byId('tip').hidden = true;
        this.owner = null;
    },

    hideSoon() {
        clearTimeout(this.timer);
        this.timer = setTimeout(() => this.hide(), 200);
    },

    /** Gives the elements below a container their tooltips: {@code linesOf} returns the lines of an element. */
    attach(container, selector, linesOf, shown = () => {}) {
        const over = event => {
            const owner = event.target.closest?.(selector);
            if (owner) {
                this.show(owner, linesOf(owner));
                shown(owner);
            }
        };
        const out = event => {
            if (event.target.closest?.(selector)) {
                this.hideSoon();
                shown(null);
            }
        };
        container.addEventListener('pointerover', over);
        container.addEventListener('focusin', over);
        container.addEventListener('pointerout', out);
        container.addEventListener('focusout', out);
    },

    start() {
        byId('tip').addEventListener('pointerenter', () => clearTimeout(this.timer));
        byId('tip').addEventListener('pointerleave', () => this.hideSoon());
        document.addEventListener('keydown', event => {
            if (event.key === 'Escape') {
                this.hide();
            }
        });
        addEventListener('scroll', () => this.owner && this.place(), {passive: true, capture: true});
    },
};
